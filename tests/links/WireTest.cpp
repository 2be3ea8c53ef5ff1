// What travels between the daemon and the services, in the numbers that both sides have agreed on.

#include <binder/IServiceManager.h>
#include <binder/Parcel.h>
#include <linux/android/binder.h>

#include "heat/DisplayModel.h"
#include "links/AidlHealthInfoListener.h"
#include "links/ChargerProxyService.h"
#include "links/GlobalFrames.h"
#include "links/HealthInfoNotifier.h"
#include "links/HidlHealthInfoListener.h"
#include "links/QuorixManager.h"
#include "support/EngineTest.h"

namespace {

using android::DEAD_OBJECT;
using android::OK;
using android::Parcel;
using android::sp;
using android::status_t;
using android::String16;
using Words = std::vector<int32_t>;
using Answers = std::map<uint32_t, Words>;          // by code
using Names = std::pair<const char*, const char*>;  // of an instance and its interface

constexpr uint32_t kInterfaceChain = 0x0f43484e;  // every HIDL service is asked for it
constexpr size_t kBinderSize = sizeof(flat_binder_object) + sizeof(int32_t);

void write(Parcel* parcel, const Words& words) {
    for (const int32_t word : words) {
        parcel->writeInt32(word);
    }
}

/**
 * A service made of numbers: notes the code and words of calls, and answers with words. With no
 * answer to any call it is dead.
 */
struct RawService : android::BBinder {
    RawService(const Names& names, Answers replies, status_t deathLink = OK)
          : descriptor(names.second), answers(std::move(replies)), link(deathLink) {
        android::defaultServiceManager()->addService(String16(names.first), this);
    }
    const String16& getInterfaceDescriptor() const override { return descriptor; }
    status_t onTransact(uint32_t code, const Parcel& data, Parcel* reply, uint32_t) override {
        if (answers.empty()) {
            return DEAD_OBJECT;
        }
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
    status_t linkToDeath(const sp<DeathRecipient>&, void*, uint32_t) override { return link; }
    std::string takeCalls() { return std::exchange(calls, ""); }

    const String16 descriptor;
    Answers answers;
    const status_t link;
    std::string calls;
    sp<IBinder> callback;  // the last that came
};

// A service's answers, the link to its death, what its use gives, its calls, how often a line
// comes.
using Attempt = std::tuple<Answers, status_t, int, std::string, std::string, int>;

const std::string kUndone = "1 binder;2 binder;";  // registered, and taken back
constexpr Names kAidlHealth{"android.hardware.health.IHealth/default",
                            "android.hardware.health.IHealth"};
constexpr Names kHidlHealth{"hidl/android.hardware.health/2.0/IHealth/default",
                            "android.hardware.health@2.0::IHealth"};

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
    /** Each service takes the place of the one before; the last one is given back. */
    template <typename Use>
    sp<RawService> tryInTurn(const Names& names, const std::vector<Attempt>& rows, Use use) {
        sp<RawService> service;
        for (const auto& [answers, link, result, calls, line, times] : rows) {
            log.clear();
            service = new RawService(names, answers, link);
            EXPECT_EQ(use(), result) << line;
            EXPECT_EQ(service->takeCalls(), calls) << line;
            EXPECT_EQ(static_cast<int>(log.count(line)), times) << line;
        }
        return service;
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
    const Answers answers = {{1, {0, -1500}}, {2, {0}}};
    const auto useCharger = [] {
        ChargerProxyService::getInstance().notifyScreenStatus(7);
        return ChargerProxyService::getInstance().getBatteryCurrentNow();
    };
    EXPECT_EQ(useCharger(), -1);
    EXPECT_TRUE(log.has("Couldn't notifyScreenStatus because of ChargerProxyService error."));
    EXPECT_TRUE(log.has("Couldn't get battery remain because of ChargerProxyService error."));
    const sp<RawService> charger =
            tryInTurn({"hidl/vendor.zenta.hardware.charger/1.0/ICharger/default",
                       "vendor.zenta.hardware.charger@1.0::ICharger"},
                      {{{}, OK, -1, "", "unable to get Charger service", 2},
                       {answers, DEAD_OBJECT, -1, "",
                        "Unable to link to Charger Service death notifications", 2},
                       {answers, OK, -1500, "2 7;1;", "Link to death notification successful", 1}},
                      useCharger);
    EXPECT_EQ(log.countOf("Couldn't"), 0u);
    charger->answers.clear();
    EXPECT_EQ(useCharger(), -1);

    tryInTurn({"SurfaceFlinger", "android.ui.ISurfaceComposer"},
              {{{{1013, {60}}}, OK, 60, "1013;", "", 0}}, kelvo::getGlobalFrames);

    tryInTurn({"hidl/vendor.zenta.hardware.displaypanelfeature/1.0/IDisplayPanelFeature/default",
               "vendor.zenta.hardware.displaypanelfeature@1.0::IDisplayPanelFeature"},
              {{{{1, {0, 0, 2, 0x0907}}}, OK, 7, "1 29;", "", 0}},
              [] { return DisplayModel::getInstance().getValFromPanelService(29); });
}

TEST_F(WireTest, holdsNoAidlHealthServiceThatFails) {
    start(sim::HealthHal::Hidl);  // the daemon's own listener asks the other one
    const auto listener = ndk::SharedRefBase::make<AidlHealthInfoListener>(HealthObserver());
    EXPECT_EQ(listener->init(), -19);
    // It is asked by the notice of its registration, and again.
    const std::string refused = "[init], Transaction error in registerCallback to HealthHAL";
    const std::string unlinked = "[init], Failed to link to death, status -32";
    const sp<RawService> held =
            tryInTurn(kAidlHealth,
                      {{{}, OK, -19, "", refused, 2},
                       {{{1, {-5, 0}}}, OK, -19, "1 binder;1 binder;", refused, 2},
                       {{{1, {0}}}, DEAD_OBJECT, -32, kUndone + kUndone, unlinked, 2},
                       {{{1, {0}}}, OK, -38, "1 binder;", refused, 0}},
                      [&] { return listener->init(); });
    held->answers.clear();
    runUntil(7);
    listener->serviceDied();
    EXPECT_EQ(log.errors("[serviceDied], aidl health service is away, it is awaited."), 1u);
    listener->serviceDied();
    EXPECT_EQ(log.errors("aidl health service not init or unknown err."), 1u);
    held->answers = {{1, {0}}};
    for (const auto& [seconds, calls] : {std::pair(11.999, ""), {12, "1 binder;"}}) {
        runUntil(seconds);
        listener->reconnect();
        EXPECT_EQ(held->takeCalls(), calls) << "five seconds after the vain attempt";
    }
}

TEST_F(WireTest, asksAnAidlHealthServiceThatFailsOnceInFiveSeconds) {
    start();
    EXPECT_TRUE(log.has("[initHealthService], init aidl health service failed."));
    EXPECT_FALSE(HealthInfoNotifier::getInstance().getOnChargeStats());
    EXPECT_FALSE(log.has("[getOnChargeStats], no health service inited."));
    const sp<RawService> service = new RawService(kAidlHealth, {{1, {0}}}, DEAD_OBJECT);
    EXPECT_EQ(service->takeCalls(), kUndone) << "at its registration";
    const auto callsAt = [&](double seconds, bool (HealthInfoNotifier::*ask)()) {
        runUntil(seconds);
        EXPECT_FALSE((HealthInfoNotifier::getInstance().*ask)());
        return service->takeCalls();
    };
    EXPECT_EQ(callsAt(4.999, &HealthInfoNotifier::getOnChargeStats), "");
    EXPECT_EQ(callsAt(5, &HealthInfoNotifier::getOnChargeStats), kUndone);
    EXPECT_EQ(callsAt(9.999, &HealthInfoNotifier::getChargerWirelessStats), "");
    EXPECT_EQ(callsAt(10, &HealthInfoNotifier::getChargerWirelessStats), kUndone);
}

TEST_F(WireTest, holdsNoHidlHealthServiceThatFails) {
    start();
    sp<HidlHealthInfoListener> listener = new HidlHealthInfoListener(HealthObserver());
    EXPECT_EQ(listener->init(), -19);
    const std::string refused = "[init], the hidl health service takes no callback";
    const std::string unlinked = "[init], Failed to link to death of the hidl health service";
    const std::string untold = "health update failed(ret=1).";
    const sp<RawService> held =
            tryInTurn(kHidlHealth,
                      {{{}, OK, -19, "", "get hidl health service failed.", 2},
                       {{{1, {-5, 0}}}, OK, -19, "1 binder;1 binder;", refused, 2},
                       {{{1, {0, 1}}}, OK, -19, "1 binder;1 binder;", refused, 2},
                       {{{1, {0, 0}}}, DEAD_OBJECT, -19, kUndone + kUndone, unlinked, 2},
                       {{{1, {0, 0}}, {3, {0, 1}}}, OK, -38, "1 binder;3;", untold, 1}},
                      [&] { return listener->init(); });
    EXPECT_TRUE(listener->wasConnected());
    listener->serviceDied(0, nullptr);
    EXPECT_EQ(log.errors("[serviceDied], hidl health service not init or unknown err."), 1u);
    EXPECT_EQ(held->takeCalls(), "") << "the one held has not died";
    const sp<HidlHealthInfoListener::IHealth> same = HidlHealthInfoListener::IHealth::getService();
    listener->serviceDied(0, same);
    EXPECT_EQ(held->takeCalls(), "1 binder;3;");
    listener = nullptr;
    EXPECT_EQ(held->takeCalls(), "2 binder;");
    listener = new HidlHealthInfoListener(HealthObserver());
    EXPECT_EQ(listener->init(), 0);
}

TEST_F(WireTest, hearsTheUsageEngineByNumber) {
    constexpr char kListener[] = "com.zenta.pelko.IZentaQuorixModuleUsage";
    start();
    auto& manager = kelvo::QuorixManager::getInstance();
    const sp<RawService> engine = new RawService({"quorix", "com.zenta.pelko.IZentaQuorix"},
                                                 {{19, {0, 5}}, {22, {0, 5}}});
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
    const sp<RawService> hal = new RawService(kAidlHealth, {{1, {0}}});
    EXPECT_EQ(hal->takeCalls(), "1 binder;");
    expectChargersInOrder(8, [&](Words words) {
        // A record, its size, and of its members the chargers, the dock's last, and the next.
        words.insert(words.begin(), {1, static_cast<int32_t>(4 * (1 + words.size()))});
        told(*hal, "android.hardware.health.IHealthInfoCallback", 1, words);
    });
}

TEST_F(WireTest, hearsTheHidlHealthServiceByNumber) {
    start(sim::HealthHal::Hidl);
    EXPECT_TRUE(log.has("[initHealthService], init hidl health service failed."));
    EXPECT_FALSE(HealthInfoNotifier::getInstance().getOnChargeStats());
    EXPECT_FALSE(HealthInfoNotifier::getInstance().getChargerWirelessStats());
    EXPECT_TRUE(log.has("[getOnChargeStats], no health service inited."));
    EXPECT_TRUE(log.has("[getChargerWirelessStats], no health service inited."));
    const sp<RawService> hal = new RawService(kHidlHealth, {{1, {0, 0}}, {3, {0, 0}}});
    EXPECT_EQ(hal->takeCalls(), "1 binder;3;");
    expectChargersInOrder(15, [&](Words words) {
        // Numbers, a text, the mean current, two disks' worth of nothing.
        words.insert(words.end(), {4, 0x6e6f694c, -5, 0, 0});
        told(*hal, "android.hardware.health@2.0::IHealthInfoCallback", 1, words);
    });
}
