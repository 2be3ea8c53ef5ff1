// The start-up with the daemon's own threads; EngineStressTest has them at work.

#include <binder_linux/LocalServiceManager.h>
#include <gtest/gtest.h>
#include <pthread.h>

#include "core/KelvoMain.h"
#include "core/MessageManager.h"
#include "support/Await.h"
#include "support/LogCapture.h"
#include "support/Phone.h"

namespace {

struct LiveStart : testing::Test {
    LiveStart() {
        android::installLocalServiceManager();
        phone().setProperty("persist.sys.kelvo.enable", "1");
    }
    LogCapture log;
};

}  // namespace

TEST_F(LiveStart, pollsAgainWhenItHasBeenWoken) {
    ASSERT_EQ(kelvo::kelvo_start(nullptr), 0);
    // A poll goes on by itself after a message, and returns when one becomes the next that is not
    // due yet. It does not when that one comes in while another is handled, so it is repeated.
    int32_t delayMs = INT32_MAX;
    EXPECT_TRUE(await([&] {
        kelvo::MessageManager::getInstance().sendMessageDelayed(
                {kelvo::MSG_NOTIFY_THERMAL_STATUS, -1, -1, 3, "", {}, {}}, delayMs -= 1000);
        return log.has("MessageManager loop once");
    }));
    kelvo::MessageManager::getInstance().sendMessage(
            {kelvo::MSG_NOTIFY_THERMAL_STATUS, -1, -1, 4, "", {}, {}});
    EXPECT_TRUE(await([&] { return log.has("Notify thermal status:4"); }));
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
