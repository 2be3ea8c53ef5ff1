// The start-up with the daemon's own threads.

#include <binder_linux/LocalServiceManager.h>
#include <gmock/gmock.h>
#include <pthread.h>
#include <unistd.h>

#include <functional>
#include <thread>

#include "common/ConfigStore.h"
#include "core/KelvoMain.h"
#include "core/MessageManager.h"
#include "support/Files.h"
#include "support/Json.h"
#include "support/LogCapture.h"
#include "support/Phone.h"

namespace {

struct LiveStart : testing::Test {
    LiveStart() {
        android::installLocalServiceManager();
        tree.setProperty("persist.sys.kelvo.enable", "1");
    }

    // The time limit of the test ends a wait in vain.
    static void await(const std::function<bool()>& condition) {
        while (!condition()) {
            std::this_thread::yield();
        }
    }

    sim::DeviceTree tree = phone();
    LogCapture log;
};

}  // namespace

TEST_F(LiveStart, fitsAndHandlesMessages) {
    tree.addZone(0, "cpu", 40000);
    tree.setNode(
            "/system_ext/etc/kelvo/kelvo.conf",
            common::encryptConfig(json("{'temp_threshold_down':[],'shell_temp_fitting_model':{" +
                                       scene("default", 0, "cpu") + "}}")));
    tree.setNode("/proc/shell-temp", "");
    ASSERT_EQ(kelvo::kelvo_start(nullptr), 0);
    const kelvo::KelvoMessage message{kelvo::MSG_NOTIFY_THERMAL_STATUS, -1, -1, 3, "", {}, {}};
    kelvo::MessageManager::getInstance().sendMessage(message);
    await([&] { return log.has("Notify thermal status:3"); });
    // The poll goes on by itself after a message, and returns when one becomes the next that is not
    // due yet. It does not when that one comes in while another is handled, so it is repeated.
    int32_t delayMs = INT32_MAX;
    await([&] {
        kelvo::MessageManager::getInstance().sendMessageDelayed(message, delayMs -= 1000);
        return log.has("MessageManager loop once");
    });
    await([&] { return tree.node("/proc/shell-temp") == "0 40000\n"; });
    EXPECT_THAT(threadNames(getpid()), testing::IsSupersetOf({"work", "st-fitting"}));
}

TEST_F(LiveStart, endsWhenThreadCannotStart) {
    pthread_attr_t attributes;
    pthread_attr_init(&attributes);
    pthread_attr_setstacksize(&attributes, size_t{1} << 60);  // more than there are addresses
    pthread_setattr_default_np(&attributes);
    EXPECT_EQ(kelvo::kelvo_main(nullptr), -1);
    EXPECT_EQ(log.errors("create work_thread failed(11)\n"), 1u);
    EXPECT_FALSE(log.has("kelvo misc init..."));
}
