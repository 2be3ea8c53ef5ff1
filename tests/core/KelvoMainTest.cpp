#include "core/KelvoMain.h"

#include <errno.h>
#include <gmock/gmock.h>
#include <stdlib.h>

#include <limits>
#include <map>
#include <memory>

// The binder headers need the two above.
#include <binder/IServiceManager.h>

#include "ManualThreads.h"
#include "core/Version.h"
#include "service/KelvoService.h"
#include "sim/DeviceTree.h"
#include "support/LogCapture.h"

using android::IBinder;
using android::sp;
using android::String16;
using testing::ElementsAreArray;

namespace {

// Writes registrations down, and refuses them when told to.
class RecordingServiceManager : public android::IServiceManager {
  public:
    struct Registration {
        String16 name;
        sp<IBinder> service;
        bool allowIsolated;
        int dumpFlags;
    };
    std::vector<Registration> registrations;
    android::status_t answer = android::OK;
    android::wp<IBinder> refused;

    android::status_t addService(const String16& name, const sp<IBinder>& service,
                                 bool allowIsolated, int dumpFlags) override {
        if (answer == android::OK) {
            registrations.push_back({name, service, allowIsolated, dumpFlags});
        } else {
            refused = service;
        }
        return answer;
    }
    sp<IBinder> getService(const String16& name) const override { return checkService(name); }
    sp<IBinder> waitForService(const String16& name) override { return checkService(name); }
    sp<IBinder> checkService(const String16&) const override { return nullptr; }
    android::Vector<String16> listServices(int) override { return {}; }
    bool isDeclared(const String16&) override { return false; }

  protected:
    IBinder* onAsBinder() override { return nullptr; }
};

// A Qualcomm phone.
class KelvoMainTest : public testing::Test {
  protected:
    void SetUp() override {
        mTree.setProperty("persist.sys.kelvo.enable", "1");
        mTree.setNode("/sys/devices/soc0/soc_id", "457\n");
        mTree.setNode("/sys/devices/soc0/raw_version", "1\n");
        android::setDefaultServiceManager(mServices);
    }
    bool hasError(const std::string& text) const {
        return mLog.count(ANDROID_LOG_ERROR, text) == 1;
    }

    sim::DeviceTree mTree{getenv("KELVO_ROOT")};
    sp<RecordingServiceManager> mServices = new RecordingServiceManager();
    LogCapture mLog;
};

}  // namespace

TEST_F(KelvoMainTest, isEnabledByExactlyTwoValues) {
    const struct {
        const char* value;
        bool enabled;
    } rows[] = {
            {"1", true},   {"2", true},     {"", false},   {"0", false},
            {"3", false},  {"11", false},   {"1 ", false}, {"2x", false},
            {" 1", false}, {"true", false}, {"12", false},
    };
    for (const auto& row : rows) {
        mTree.setProperty("persist.sys.kelvo.enable", row.value);
        EXPECT_EQ(kelvo::isKelvoEnabled(), row.enabled) << '"' << row.value << '"';
    }
}

TEST_F(KelvoMainTest, startsInOrder) {
    const std::vector<std::pair<int, std::string>> expected = {
            {ANDROID_LOG_ERROR, "kelvo main start"},
            {ANDROID_LOG_DEBUG, "caller provided resp:(nil)"},
            {ANDROID_LOG_ERROR,
             std::string("starting kelvo version:") + kelvo::kBuildVersion + "\n"},
            {ANDROID_LOG_ERROR, "platform (SM8450)"},
            {ANDROID_LOG_INFO, "add kelvo service success"},
            {ANDROID_LOG_INFO, "work thread is running..."},
            {ANDROID_LOG_INFO, "MessageManager polling!!"},
            {ANDROID_LOG_INFO, "kelvo misc init..."},
            {ANDROID_LOG_INFO, "shell temp fitting module init..."},
            {ANDROID_LOG_INFO, "kelvo misc init compeleted!"},
    };
    ASSERT_EQ(kelvo::kelvo_start(nullptr), 0);
    std::vector<std::pair<int, std::string>> lines;
    for (const LogCapture::Line& line : mLog.lines()) {
        const std::pair<int, std::string> entry{line.priority, line.text};
        if (std::find(expected.begin(), expected.end(), entry) != expected.end()) {
            lines.push_back(entry);
        }
    }
    EXPECT_THAT(lines, ElementsAreArray(expected));
    EXPECT_FALSE(mLog.has("kelvo has not support this platform, exit!"));
}

TEST_F(KelvoMainTest, publishesSecondServiceUnderTheSameName) {
    ASSERT_EQ(kelvo::kelvo_start(nullptr), 0);
    ASSERT_EQ(mServices->registrations.size(), 2u);
    for (const auto& registration : mServices->registrations) {
        EXPECT_EQ(registration.name, String16("kelvo"));
        EXPECT_EQ(registration.service->getInterfaceDescriptor(),
                  String16("com.zenta.kelvo.IKelvoService"));
        EXPECT_FALSE(registration.allowIsolated);
        EXPECT_EQ(registration.dumpFlags, 8);
    }
    EXPECT_NE(mServices->registrations[0].service, mServices->registrations[1].service);
}

TEST_F(KelvoMainTest, carriesOnWithoutPlatform) {
    mTree.setNode("/sys/devices/soc0/soc_id", "1\n");
    EXPECT_EQ(kelvo::kelvo_start(nullptr), 0);
    EXPECT_TRUE(hasError("kelvo has not support this platform, exit!"));
    EXPECT_TRUE(hasError("platform ()"));
    EXPECT_TRUE(mLog.has("kelvo misc init compeleted!"));
}

TEST_F(KelvoMainTest, refusesToStartWhenDisabled) {
    for (const char* value : {"", "0", "x"}) {
        mLog.clear();
        mTree.setProperty("persist.sys.kelvo.enable", value);
        EXPECT_EQ(kelvo::kelvo_main(nullptr), -1);
        EXPECT_TRUE(hasError("kelvo has been disabled!")) << value;
    }
    EXPECT_TRUE(mServices->registrations.empty());
}

TEST_F(KelvoMainTest, endsWhenServiceIsRefused) {
    mServices->answer = android::PERMISSION_DENIED;
    EXPECT_EQ(kelvo::kelvo_main(nullptr), -1);
    EXPECT_TRUE(hasError("add kelvo service failed(-1)"));
    EXPECT_EQ(mServices->refused.promote(), nullptr);
    EXPECT_EQ(ManualThreads::looper, nullptr);
}

TEST_F(KelvoMainTest, endsWhenThreadCannotStart) {
    ManualThreads::startError = EAGAIN;
    EXPECT_EQ(kelvo::kelvo_main(nullptr), -1);
    EXPECT_TRUE(hasError("create work_thread failed(" + std::to_string(EAGAIN) + ")\n"));
    EXPECT_FALSE(mLog.has("kelvo misc init..."));
}

TEST_F(KelvoMainTest, setsIpaUpUnlessProductHasItsOwnZone) {
    const struct {
        const char* property;
        const char* number;
    } rows[] = {{"", "1"}, {"0", "1"}, {"soc", "1"}, {"7", ""}, {"-1", ""}};
    mTree.addZone(0, "cpu", 40000);
    mTree.addZone(1, "soc_thermal_ipa", 41000);
    for (const auto& row : rows) {
        mTree.setProperty("ro.vendor.zenta.ipa.thermalzone", row.property);
        mTree.setProperty("sys.ipa_thermal_number", "");
        ASSERT_EQ(kelvo::kelvo_start(nullptr), 0);
        EXPECT_EQ(mTree.property("sys.ipa_thermal_number"), row.number) << row.property;
    }
}
