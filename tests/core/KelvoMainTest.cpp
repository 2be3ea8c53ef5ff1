#include "core/KelvoMain.h"

#include <binder/Parcel.h>
#include <binder_linux/LocalServiceManager.h>
#include <gmock/gmock.h>

#include "LinesOf.h"
#include "base/Version.h"
#include "support/EngineTest.h"

using android::sp;

namespace {

// Writes the daemon's registrations into the log, and refuses them when told to.
struct RecordingServiceManager : android::LocalServiceManager {
    std::vector<sp<android::IBinder>> services;
    android::status_t answer = android::OK;

    android::status_t addService(const android::String16& name, const sp<android::IBinder>& service,
                                 bool allowIsolated, int dumpFlags) override {
        if (name != android::String16("kelvo")) {  // the simulated phone's own
            return LocalServiceManager::addService(name, service, allowIsolated, dumpFlags);
        }
        __android_log_print(ANDROID_LOG_WARN, "test", "add %s, isolated %d, dump %d",
                            android::String8(name).string(), allowIsolated, dumpFlags);
        services.push_back(service);
        return answer;
    }
};

constexpr char kEnable[] = "persist.sys.kelvo.enable";

struct KelvoMainTest : EngineTest {
    KelvoMainTest() { android::installLocalServiceManager(services); }

    const sp<RecordingServiceManager> services = new RecordingServiceManager();
};

}  // namespace

TEST_F(KelvoMainTest, startsInOrderAndPublishesASecondServiceUnderTheSameName) {
    const std::vector<std::string> expected = {
            "E kelvo main start",
            "D caller provided resp:(nil)",
            std::string("E starting kelvo version:") + kelvo::kBuildVersion + "\n",
            "E platform (SM8450)",
            "W add kelvo, isolated 0, dump 8",
            "I add kelvo service success",
            "I work thread is running...",
            "I MessageManager polling!!",
            "I kelvo misc init...",
            "I shell temp fitting module init...",
            "I kelvo misc init compeleted!",
            "W add kelvo, isolated 0, dump 8",
    };
    startPhone();
    std::vector<std::string> lines = linesOf(log);
    std::erase_if(lines, [&](const std::string& line) {
        return std::ranges::find(expected, line) == expected.end();
    });
    EXPECT_EQ(lines, expected);
    EXPECT_NE(services->services.front(), services->services.back());
}

TEST_F(KelvoMainTest, carriesOnWithoutPlatform) {
    scenario.properties[kEnable] = "2";
    scenario.nodes.clear();
    startPhone();
    EXPECT_THAT(linesOf(log),
                testing::IsSupersetOf({"E kelvo has not support this platform, exit!",
                                       "E platform ()", "I kelvo misc init compeleted!"}));
}

TEST_F(KelvoMainTest, endsWhenDisabledOrRefused) {
    services->answer = android::PERMISSION_DENIED;
    buildPhone();
    EXPECT_EQ(kelvo::kelvo_main(nullptr), -1);
    EXPECT_EQ(linesOf(log).back(), "E add kelvo service failed(-1)");
    for (const char* value : {"", "0", "x"}) {
        phone().tree().setProperty(kEnable, value);
        EXPECT_EQ(kelvo::kelvo_main(nullptr), -1);
        EXPECT_EQ(linesOf(log).back(), "E kelvo has been disabled!") << value;
        log.clear();
    }
}
