#include "core/MessageManager.h"

#include <gmock/gmock.h>
#include <stdlib.h>

#include <thread>

#include "ManualThreads.h"
#include "sim/ConfigStore.h"
#include "sim/DeviceTree.h"
#include "support/LogCapture.h"

using kelvo::KelvoMessage;
using kelvo::MessageManager;
using testing::ElementsAre;

namespace {

KelvoMessage message(int32_t what, int32_t iValue = -1, int32_t iParam = -1) {
    KelvoMessage message;
    message.what = what;
    message.iValue = iValue;
    message.iParam = iParam;
    return message;
}

class MessageManagerTest : public testing::Test {
  protected:
    // A configuration whose one model set has this name.
    void configure(const std::string& scene) {
        mTree.setNode("/system_ext/etc/kelvo/kelvo.conf",
                      kelvo::encryptConfig(
                              R"({"temp_threshold_down":[],"shell_temp_fitting_model":{")" + scene +
                              R"(":{"temp_model":{"front":{"index":0,)"
                              R"("thermal_zone":["cpu"],"coefficient":[1]}}}}})"));
    }
    void SetUp() override {
        mTree.addZone(0, "cpu", 40000);
        configure("flashon");
        ManualThreads::setMilliseconds(0);
        MessageManager::getInstance().joinLoop();
    }
    void post(const KelvoMessage& request) {
        EXPECT_EQ(MessageManager::getInstance().sendMessage(request), 0);
        ManualThreads::handleDue();
    }
    size_t handled(int32_t what) const {
        return mLog.count(ANDROID_LOG_DEBUG,
                          "MessageManager handling message:" + std::to_string(what) + " json:");
    }

    sim::DeviceTree mTree{getenv("KELVO_ROOT")};
    LogCapture mLog;
};

}  // namespace

TEST_F(MessageManagerTest, saysWhatItHandles) {
    const struct {
        KelvoMessage request;
        int priority;
        const char* text;
    } rows[] = {
            {message(1, 41000), ANDROID_LOG_INFO, "Shell temp changed"},
            {message(3), ANDROID_LOG_INFO, "Reload global config"},
            {message(4), ANDROID_LOG_INFO, "Register client"},
            {message(5), ANDROID_LOG_INFO, "Unregister client"},
            {message(6, 4), ANDROID_LOG_INFO, "Notify thermal status:4"},
            {message(10, 41000, 3), ANDROID_LOG_INFO, "broadcast thermal level:3, temp:41000"},
            {message(11, 0), ANDROID_LOG_DEBUG, "switch screen fold fitting model Triggered"},
            {message(12, 25), ANDROID_LOG_INFO, "ambient thermal notify temp:25"},
            {message(13, 39000, 2), ANDROID_LOG_INFO, "heatsource thermal level:2, temp:39000"},
            {message(14, 1), ANDROID_LOG_INFO, "switch charge state"},
    };
    for (const auto& row : rows) {
        mLog.clear();
        post(row.request);
        EXPECT_EQ(handled(row.request.what), 1u) << row.request.what;
        EXPECT_EQ(mLog.count(row.priority, row.text), 1u) << row.text;
    }
}

TEST_F(MessageManagerTest, dropsUnhandledCodes) {
    for (const int32_t what : {-1, 0, 2, 15, INT32_MAX}) {
        mLog.clear();
        post(message(what));
        EXPECT_EQ(handled(what), 1u);
        EXPECT_EQ(mLog.lines().size(), 1u) << what;
    }
}

TEST_F(MessageManagerTest, reloadsDocumentBeforeModels) {
    post(message(9, 3));
    EXPECT_TRUE(mLog.has("switch to scene wirless_charge failed, keep origin"));
    configure("wirless_charge");
    post(message(3));
    post(message(9, 1));
    post(message(9, 3));
    EXPECT_TRUE(mLog.has("switch to scene wirless_charge success"));
}

TEST_F(MessageManagerTest, keepsDelaysAndOrder) {
    MessageManager& manager = MessageManager::getInstance();
    EXPECT_EQ(manager.sendMessageDelayed(message(6, 2), 3000), 0);
    EXPECT_EQ(manager.sendMessageDelayed(message(6, 3), INT32_MAX), 0);
    manager.sendMessageDelayed(message(6, 1), 3000);
    ManualThreads::setMilliseconds(2999);
    ManualThreads::handleDue();
    EXPECT_EQ(handled(6), 0u);

    ManualThreads::setMilliseconds(3000);
    ManualThreads::handleDue();
    std::vector<std::string> statuses;
    for (const LogCapture::Line& line : mLog.lines()) {
        if (line.priority == ANDROID_LOG_INFO) {
            statuses.push_back(line.text);
        }
    }
    EXPECT_THAT(statuses, ElementsAre("MessageManager polling!!", "Notify thermal status:2",
                                      "Notify thermal status:1"));

    ManualThreads::setMilliseconds(INT32_MAX - 1);
    ManualThreads::handleDue();
    EXPECT_FALSE(mLog.has("Notify thermal status:3"));
    ManualThreads::setMilliseconds(INT32_MAX);
    ManualThreads::handleDue();
    EXPECT_TRUE(mLog.has("Notify thermal status:3"));
}

TEST_F(MessageManagerTest, loadsFlashSceneFiveSecondsAfterRequest) {
    ManualThreads::setMilliseconds(7600);
    post(message(9, 2));
    EXPECT_EQ(
            mLog.count(ANDROID_LOG_DEBUG, "delay sendThrottlingDelayMessage, delayMs:5000, cur:7"),
            1u);
    ManualThreads::setMilliseconds(12599);
    ManualThreads::handleDue();
    EXPECT_EQ(handled(8), 0u);
    ManualThreads::setMilliseconds(12600);
    ManualThreads::handleDue();
    EXPECT_EQ(handled(8), 1u);
    EXPECT_TRUE(mLog.has("switch to scene flashon success"));
}

TEST_F(MessageManagerTest, restoreCancelsFlashSceneAndNothingElse) {
    MessageManager& manager = MessageManager::getInstance();
    post(message(9, 2));
    manager.sendThrottlingDelayMessage(4000);
    manager.sendMessageDelayed(message(6, 1), 4000);
    post(message(9, 0));
    EXPECT_EQ(mLog.count(ANDROID_LOG_DEBUG, "delay removeDelayMessage"), 1u);
    ManualThreads::setMilliseconds(10000);
    ManualThreads::handleDue();
    EXPECT_EQ(handled(8), 0u);
    EXPECT_EQ(handled(6), 1u);
}

TEST_F(MessageManagerTest, takesMessagesFromAnyThread) {
    constexpr size_t kMessages = 200;
    std::vector<std::thread> senders;
    for (int sender = 0; sender < 3; ++sender) {
        senders.emplace_back([] {
            for (size_t i = 0; i < kMessages; ++i) {
                MessageManager::getInstance().sendMessage(message(1, 40000));
            }
        });
    }
    for (std::thread& sender : senders) {
        sender.join();
    }
    ManualThreads::handleDue();
    EXPECT_EQ(handled(1), 3 * kMessages);
}
