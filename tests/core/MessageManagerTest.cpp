#include "core/MessageManager.h"

#include "LinesOf.h"
#include "common/ConfigStore.h"
#include "sim/scenario/PhonePaths.h"
#include "sim/virtual/VirtualScheduler.h"
#include "sim/virtual/VirtualTime.h"
#include "support/EngineTest.h"

using kelvo::KelvoMessage;
namespace {

KelvoMessage message(int32_t what, int32_t iValue = -1, int32_t iParam = -1) {
    return {what, iParam, -1, iValue, "s", {}, {}};
}

enum SceneMessage { FLASH = 8, OP = 9, FOLD = 11 };

const std::string kNoName = "E Can't find op scene, code:";
const std::string kSame = "E Same operator code:";
const std::string kInvalid = "E invalid op code;";
const std::string kDelayed = "D delay sendThrottlingDelayMessage, delayMs:5000, cur:7";
const std::string kScheduled = "D sendThrottlingDelayMessage";
const std::string kCancelled = "D delay removeDelayMessage";
const std::string kLit = "E load light lamp fitting model triggered, current scene:";
const std::string kFolded = "D switch screen fold fitting model Triggered";
const std::string kNoFlash = "E current scene is wireless charge, ignore flash scene";
const std::string kFull = "1024 messages wait, calls that post one are refused";
const std::string kNoFold = "E current scene is flashon, ignore screen fold scene";

std::string asks(const std::string& scene, const std::string& rollback,
                 const std::string& current) {
    return "E Reload shell fitting model config " + scene + ", Rollback scene:" + rollback +
           ", Current scene:" + current;
}

std::string starts(const std::string& scene) {
    return "E start load " + scene + " fitting model";
}

std::string switches(const std::string& scene) {
    return "E switch to scene " + scene + " success";
}

std::string refuses(const std::string& scene) {
    return "E switch to scene " + scene + " failed, keep origin";
}

struct MessageManagerTest : EngineTest {
    MessageManagerTest() {
        addZone("skin", 40000);
        setScenes(scene("default", 0, "skin") + "," + scene("wirless_charge", 0, "skin"));
        scenario.uptimeMs = 7600;
        startPhone();
    }
    // What is logged while everything due at this time is handled.
    Lines linesAt(int64_t timeMs) {
        log.clear();
        sim::VirtualTime::advanceTo(timeMs);
        sim::VirtualScheduler::get().handleMessages();
        return linesOf(log);
    }
    Lines linesAfter(const KelvoMessage& request) {
        EXPECT_EQ(manager.sendMessage(request), 0);
        return linesAt(0);
    }
    void take(const std::vector<std::pair<KelvoMessage, Lines>>& steps) {
        for (const auto& [request, expected] : steps) {
            Lines lines = linesAfter(request);
            lines.erase(lines.begin());
            EXPECT_EQ(lines, expected);
        }
    }

    kelvo::MessageManager& manager = kelvo::MessageManager::getInstance();
};

}  // namespace

TEST_F(MessageManagerTest, saysWhatItHandles) {
    const std::pair<KelvoMessage, const char*> rows[] = {
            {message(1, 41000), "I Shell temp changed"},
            {message(3), "I Reload global config"},
            {{4, 1, -1, -1, "s", {}, new android::BBinder}, "I Register client"},
            {message(5), "I Unregister client"},
            {message(6, 4), "I Notify thermal status:4"},
            {message(10, 41000, 3), "I broadcast thermal level:3, temp:41000"},
            {message(12, 25), "I ambient thermal notify temp:25"},
            {message(13, 39000, 2), "I heatsource thermal level:2, temp:39000"},
            {message(14, 1), "I switch charge state"},
    };
    for (const auto& [request, line] : rows) {
        Lines lines = linesAfter(request);
        lines.resize(2);
        const std::string code = std::to_string(request.what);
        EXPECT_EQ(lines, (Lines{"D MessageManager handling message:" + code + " json:s", line}));
    }
    for (const int32_t what : {INT32_MIN, -1, 0, 2, 15}) {
        EXPECT_EQ(linesAfter(message(what)).size(), 1u) << what;
    }
}

TEST_F(MessageManagerTest, changesScenes) {
    const std::string normal = "default";
    const std::string charge = "wirless_charge";
    const std::string fold = "screen_fold";
    const std::string flash = "flashon";
    take({
            // A first "restore" counts as a repeated one.
            {message(OP, 0), {kNoName + "0", kSame + "0"}},
            {message(OP, 3), {asks(charge, normal, normal), starts(charge), switches(charge)}},
            {message(OP, 4), {asks(fold, normal, charge), starts(fold), refuses(fold)}},
            {message(OP, 5), {kNoName + "5", kInvalid + "5"}},
            // What is unknown is remembered as well.
            {message(OP, -1), {kNoName + "-1", kInvalid + "-1"}},
            {message(OP, -1), {kNoName + "-1", kSame + "-1"}},
            {message(OP, 2), {asks(flash, normal, charge), kNoFlash}},
            {message(OP, 1), {asks(normal, normal, charge), starts(normal), switches(normal)}},
            {message(OP, 2), {asks(flash, charge, normal), kDelayed, kScheduled}},
            {message(OP, 2), {asks(flash, charge, normal), kSame + "2"}},
            // The lamp is on although there are no models for it.
            {message(FLASH), {kLit + normal, refuses(flash)}},
            {message(OP, 4), {asks(fold, charge, flash), kNoFold}},
            // A fold during flash is for the rollback only.
            {message(FOLD, 0), {kFolded}},
            {message(OP, 0), {kNoName + "0", kCancelled, refuses(fold)}},
            {message(OP, 1), {asks(normal, fold, flash), starts(normal), switches(normal)}},
            // Folded although there are no models for it.
            {message(FOLD, 0), {kFolded, refuses(fold)}},
            {message(OP, 3), {asks(charge, fold, fold), starts(charge), switches(charge)}},
    });
    // The document must be reloaded before the models.
    setScenes(scene(fold, 0, "skin") + "," + scene(flash, 0, "skin"));
    phone().tree().setNode(sim::kMainConfigPath, common::encryptConfig(*scenario.config.main));
    linesAfter(message(3));
    take({
            {message(FLASH), {kLit + charge, switches(flash)}},
            {message(FLASH), {kLit + flash, switches(flash)}},
            {message(OP, 0), {kNoName + "0", kCancelled, switches(charge)}},
            {message(FOLD, 1), {kFolded, switches(normal)}},
            {message(OP, 4), {asks(fold, normal, normal), starts(fold), switches(fold)}},
            {message(FOLD, -1), {kFolded, switches(normal)}},
            {message(OP, 2), {asks(flash, normal, normal), kDelayed, kScheduled}},
    });
    EXPECT_EQ(linesAt(4999), Lines{});
    EXPECT_EQ(linesAt(5000).back(), switches(flash));
}

TEST_F(MessageManagerTest, hasRoomForSoManyOfCallersAndMoreOfItsOwn) {
    // Those of INT32_MAX stay.
    const auto fill = [&] {
        int32_t posted = 0;
        for (; manager.hasRoom() && posted <= manager.kMostWaiting; ++posted) {
            EXPECT_EQ(manager.sendMessageDelayed(message(2), posted < 512 ? 500 : INT32_MAX), 0);
        }
        return posted;
    };
    EXPECT_EQ(manager.sendMessageDelayed(message(2), 1000), 0);
    EXPECT_EQ(fill(), manager.kMostWaiting - 1);
    EXPECT_EQ(log.errors(kFull), 1u);
    linesAt(500);
    EXPECT_EQ(fill(), manager.kMostWaiting / 2);
    EXPECT_FALSE(log.has(kFull)) << "half of the places were taken";
    linesAt(1000);
    EXPECT_EQ(fill(), manager.kMostWaiting / 2 + 1);
    EXPECT_TRUE(log.has(kFull)) << "one less was";
    int32_t own = manager.kMostWaiting;
    const auto fillWithOwn = [&] {
        while (manager.sendMessageDelayed(message(2), own % 1000 == 0 ? 0 : INT32_MAX) == 0) {
            ++own;
        }
        return own;
    };
    EXPECT_EQ(fillWithOwn(), kelvo::MessageManager::kMostWaitingInside);
    linesAt(1000);  // those of 2000, 3000, 4000, 5000 and 6000
    EXPECT_EQ(fillWithOwn(), kelvo::MessageManager::kMostWaitingInside + 5);
}

TEST_F(MessageManagerTest, restoreCancelsFlashScenesAndKeepsOtherDelays) {
    linesAfter(message(OP, 2));
    EXPECT_EQ(manager.sendThrottlingDelayMessage(2000), 0);
    EXPECT_EQ(manager.sendMessageDelayed(message(6, 2), 3000), 0);
    EXPECT_EQ(manager.sendMessageDelayed(message(6, 3), INT32_MAX), 0);
    linesAfter(message(OP, 0));
    EXPECT_EQ(linesAt(2999), Lines{});
    EXPECT_EQ(linesAt(3000).at(1), "I Notify thermal status:2");
    EXPECT_EQ(linesAt(INT32_MAX - 1), Lines{});
    EXPECT_EQ(linesAt(INT32_MAX).at(1), "I Notify thermal status:3");
}
