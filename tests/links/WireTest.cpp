// What travels between the daemon and the services, in the numbers that both sides have agreed on.

#include <binder/IServiceManager.h>
#include <binder/Parcel.h>
#include <linux/android/binder.h>

#include "links/ChargerProxyService.h"
#include "links/GlobalFrames.h"
#include "links/HealthInfoNotifier.h"
#include "links/QuorixManager.h"
#include "support/EngineTest.h"

namespace {

using android::OK;
using android::Parcel;
using android::sp;
using android::status_t;
using android::String16;
using Words = std::vector<int32_t>;

constexpr uint32_t kInterfaceChain = 0x0f43484e;  // every HIDL service is asked for it
constexpr size_t kBinderSize = sizeof(flat_binder_object) + sizeof(int32_t);

void write(Parcel* parcel, const Words& words) {
    for (const int32_t word : words) {
        parcel->writeInt32(word);
    }
}

/** A service made of numbers: notes the code and words of calls, and answers with words. */
struct RawService : android::BBinder {
    RawService(const std::string& name, std::string interface, std::map<uint32_t, Words> replies)
          : descriptor(interface.c_str()), answers(std::move(replies)) {
        android::defaultServiceManager()->addService(String16(name.c_str()), this);
    }
    const String16& getInterfaceDescriptor() const override { return descriptor; }
    status_t onTransact(uint32_t code, const Parcel& data, Parcel* reply, uint32_t) override {
        if (code == kInterfaceChain) {
            const std::string text = android::String8(descriptor).string();
            write(reply, {0, 1, static_cast<int32_t>(text.size())});
            return reply->write(text.data(), text.size());
        }
        calls += data.enforceInterface(descriptor) ? std::to_string(code) : "no token";
        while (data.dataAvail() > 0) {
            const bool isBinder = data.dataAvail() == kBinderSize;
            callback = isBinder ? data.readStrongBinder() : callback;
            calls += isBinder ? " binder" : " " + std::to_string(data.readInt32());
        }
        calls += ";";
        write(reply, answers[code]);
        return OK;
    }
    status_t linkToDeath(const sp<DeathRecipient>&, void*, uint32_t) override { return OK; }
    std::string takeCalls() { return std::exchange(calls, ""); }

    const String16 descriptor;
    std::map<uint32_t, Words> answers;
    std::string calls;
    sp<IBinder> callback;  // the last that came
};

struct WireTest : EngineTest {
    void start(sim::HealthHal hal = sim::HealthHal::Aidl) {
        scenario.services.clear();
        scenario.healthHal = hal;
        startWithoutTemp(",'temp_threshold_down':[]");
    }
    /** What the callback answers to a call of these words. */
    static Words told(const RawService& service, const char* descriptor, uint32_t code,
                      const Words& words) {
        Parcel data;
        Parcel reply;
        data.writeInterfaceToken(String16(descriptor));
        write(&data, words);
        EXPECT_EQ(service.callback->transact(code, data, &reply), OK);
        Words answer;
        while (reply.dataAvail() > 0) {
            answer.push_back(reply.readInt32());
        }
        return answer;
    }
    /** Which charger each of the first words of a health record stands for. */
    template <typename Tell>
    static void expectChargersInOrder(size_t words, Tell tell) {
        auto& health = HealthInfoNotifier::getInstance();
        for (size_t i = 0; i < words; ++i) {
            Words flags(words);
            flags[i] = 1;
            tell(flags);
            EXPECT_EQ(health.getOnChargeStats(), i < 3) << i;
            EXPECT_EQ(health.getChargerWirelessStats(), i == 2) << i;
        }
    }
};

}  // namespace

TEST_F(WireTest, asksServicesByNumber) {
    start();
    const sp<RawService> charger = new RawService(
            "hidl/vendor.zenta.hardware.charger/1.0/ICharger/default",
            "vendor.zenta.hardware.charger@1.0::ICharger", {{1, {0, -1500}}, {2, {0}}});
    EXPECT_EQ(ChargerProxyService::getInstance().getBatteryCurrentNow(), -1500);
    ChargerProxyService::getInstance().notifyScreenStatus(7);
    EXPECT_EQ(charger->takeCalls(), "1;2 7;");

    const sp<RawService> compositor =
            new RawService("SurfaceFlinger", "android.ui.ISurfaceComposer", {{1013, {60}}});
    EXPECT_EQ(kelvo::getGlobalFrames(), 60);
    EXPECT_EQ(compositor->takeCalls(), "1013;");
}

TEST_F(WireTest, hearsTheUsageEngineByNumber) {
    constexpr char kListener[] = "com.zenta.pelko.IZentaQuorixModuleUsage";
    start();
    auto& manager = kelvo::QuorixManager::getInstance();
    const sp<RawService> engine =
            new RawService("quorix", "com.zenta.pelko.IZentaQuorix", {{19, {0, 5}}, {22, {0, 5}}});
    manager.regCallBack();
    EXPECT_EQ(manager.startQuorix(), 0);
    EXPECT_EQ(manager.stopQuorix(), 0);
    manager.regCallBack();
    EXPECT_EQ(engine->takeCalls(), "19 2 binder;22 1;22 2;");
    for (const char* line :
         {"qxManager callback has been registered", "QuorixModuleUsageCb construct",
          "qxManager: registerModuleUsageListener ok",
          "qxManager: informThermalEvent startQuorix ok",
          "qxManager: informThermalEvent stopQuorix ok"}) {
        EXPECT_EQ(log.count(line), 1u) << line;
    }
    // Of one display record: start 0, end 3600, energy 1000.
    EXPECT_EQ(told(*engine, kListener, 1, {1, 10, 0x00080852, 0x201c9010, 0x07e8}), Words{0});
    EXPECT_EQ(manager.getDisplay(), 1);
    EXPECT_EQ(told(*engine, kListener, 2, {1}), (Words{0, 0})) << "no bytes";
    engine->answers = {{19, {-5, 0}}, {22, {-5, 0}}};
    EXPECT_EQ(manager.registerQuorixCallback(), -1);
    EXPECT_EQ(manager.startQuorix(), -1);
    EXPECT_EQ(manager.stopQuorix(), -1);
    for (const char* line : {"registerModuleUsageListener", "informThermalEvent startQuorix",
                             "informThermalEvent stopQuorix"}) {
        EXPECT_EQ(log.errors(std::string("qxManager: ") + line + " fail"), 1u) << line;
    }
}

TEST_F(WireTest, hearsTheAidlHealthServiceByNumber) {
    start();
    const sp<RawService> hal = new RawService("android.hardware.health.IHealth/default",
                                              "android.hardware.health.IHealth", {{1, {0}}});
    EXPECT_EQ(hal->takeCalls(), "1 binder;");
    expectChargersInOrder(8, [&](Words words) {
        // A record, its size, and of its members the chargers, the dock's last, and the next.
        words.insert(words.begin(), {1, static_cast<int32_t>(4 * (1 + words.size()))});
        told(*hal, "android.hardware.health.IHealthInfoCallback", 1, words);
    });
}

TEST_F(WireTest, hearsTheHidlHealthServiceByNumber) {
    start(sim::HealthHal::Hidl);
    const sp<RawService> hal =
            new RawService("hidl/android.hardware.health/2.0/IHealth/default",
                           "android.hardware.health@2.0::IHealth", {{1, {0, 0}}, {3, {0, 0}}});
    EXPECT_EQ(hal->takeCalls(), "1 binder;3;");
    expectChargersInOrder(15, [&](Words words) {
        // Numbers, a text, the mean current, two disks' worth of nothing.
        words.insert(words.end(), {4, 0x6e6f694c, -5, 0, 0});
        told(*hal, "android.hardware.health@2.0::IHealthInfoCallback", 1, words);
    });
}
