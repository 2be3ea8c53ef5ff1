#include <android/hardware/health/2.0/IHealth.h>
#include <binder/Parcel.h>
#include <binder_linux/LocalServiceManager.h>
#include <gtest/gtest.h>
#include <vendor/zenta/hardware/displaypanelfeature/1.0/IDisplayPanelFeature.h>

#include "TestCharger.h"

namespace android::hardware {
namespace {

using health::V1_0::BatteryHealth;
using health::V1_0::BatteryStatus;
using vendor::zenta::hardware::displaypanelfeature::V1_0::IDisplayPanelFeature;
using namespace health::V2_0;

/** Stands for the way to another process: whoever holds it gets a proxy of what is behind. */
struct Relay : BBinder {
    explicit Relay(const sp<hidl::base::V1_0::IBase>& object) : mObject(toBinder(object)) {}
    status_t onTransact(uint32_t code, const Parcel& data, Parcel* reply, uint32_t flags) override {
        const status_t status = mObject->transact(code, data, reply, flags);
        if (reply != nullptr) {
            mReplyBytes = reply->dataSize();
            reply->setDataSize(std::min(mReplyBytes, mLimit));
        }
        return status;
    }
    const sp<IBinder> mObject;
    size_t mReplyBytes = 0;
    size_t mLimit = SIZE_MAX;  // what arrives of a reply
};

template <typename I>
sp<I> proxyOf(const sp<I>& object) {
    return fromBinder<I>(new Relay(object));
}

struct Panel : IDisplayPanelFeature {
    Return<void> getDisplayPanelFeatureValue(uint32_t id,
                                             getDisplayPanelFeatureValue_cb cb) override {
        if (id != 0) {
            cb(id == UINT32_MAX ? -22 : 0, {0, 127, 255});
        }
        return Void();
    }
};

constexpr auto kFull = BatteryStatus::FULL;
constexpr auto kCold = BatteryHealth::COLD;

HealthInfo fullInfo() {
    HealthInfo info;
    info.legacy = {true, false, true, 1, 2, kFull, kCold, true, 100, 4, 5, -6, 7, 8, 9, "Li-ion"};
    info.batteryCurrentAverage = -10;
    info.diskStats = {{1, 2, 3, 4, 5, 6, 7, 8, 9, 10, UINT64_MAX, {true, false, "sda"}}, {}};
    info.storageInfos = {{{false, true, "ufs"}, 1, 2, UINT16_MAX, "3.1"}};
    return info;
}

struct Listener : IHealthInfoCallback {
    Return<void> healthInfoChanged(const HealthInfo& info) override {
        mInfo = info;
        return Void();
    }
    HealthInfo mInfo;
};

/** Every answer differs from every other, so that none can stand for another. */
struct Battery : IHealth {
    Return<Result> registerCallback(const sp<IHealthInfoCallback>& callback) override {
        mCallback = callback;
        return Result::SUCCESS;
    }
    Return<Result> unregisterCallback(const sp<IHealthInfoCallback>& callback) override {
        return callback == mCallback ? Result::SUCCESS : Result::NOT_FOUND;
    }
    Return<Result> update() override {
        EXPECT_TRUE(proxyOf(mCallback)->healthInfoChanged(fullInfo()).isOk());
        return Result::CALLBACK_DIED;
    }
    template <typename Callback, typename T>
    static Return<void> tell(const Callback& callback, const T& value) {
        callback(Result::NOT_SUPPORTED, value);
        return Void();
    }
    Return<void> getChargeCounter(getChargeCounter_cb cb) override { return tell(cb, 1); }
    Return<void> getCurrentNow(getCurrentNow_cb cb) override { return tell(cb, 2); }
    Return<void> getCurrentAverage(getCurrentAverage_cb cb) override { return tell(cb, 3); }
    Return<void> getCapacity(getCapacity_cb cb) override { return tell(cb, 4); }
    Return<void> getEnergyCounter(getEnergyCounter_cb cb) override { return tell(cb, 5LL << 32); }
    Return<void> getChargeStatus(getChargeStatus_cb cb) override { return tell(cb, kFull); }
    Return<void> getStorageInfo(getStorageInfo_cb cb) override {
        return tell(cb, fullInfo().storageInfos);
    }
    Return<void> getDiskStats(getDiskStats_cb cb) override {
        return tell(cb, fullInfo().diskStats);
    }
    Return<void> getHealthInfo(getHealthInfo_cb cb) override { return tell(cb, fullInfo()); }
    sp<IHealthInfoCallback> mCallback;
};

struct HidlCallTest : testing::Test {
    const sp<LocalServiceManager> mManager = installLocalServiceManager();
};

TEST_F(HidlCallTest, carriesValuesAndErrors) {
    const sp<TestCharger> charger = new TestCharger;
    const sp<ICharger> proxy = proxyOf<ICharger>(charger);
    EXPECT_EQ(-1200, proxy->getBatteryCurrentNow());
    EXPECT_TRUE(proxy->notifyScreenStatus(2).isOk());
    EXPECT_EQ(2, charger->mScreen);
    const Return<void> refused = proxy->notifyScreenStatus(-1);
    EXPECT_FALSE(refused.isOk());
    EXPECT_EQ("Status(-5, EX_ILLEGAL_STATE): 'off'", refused.description());
    const sp<IDisplayPanelFeature> panel = proxyOf<IDisplayPanelFeature>(new Panel);
    for (const uint32_t id : {29u, UINT32_MAX}) {
        int32_t status = 1;
        const auto take = [&](int32_t answer, const hidl_vec<uint8_t>& value) {
            status = answer;
            EXPECT_EQ((hidl_vec<uint8_t>{0, 127, 255}), value);
        };
        EXPECT_TRUE(panel->getDisplayPanelFeatureValue(id, take).isOk());
        EXPECT_EQ(id == 29 ? 0 : -22, status);
    }
    EXPECT_FALSE(panel->getDisplayPanelFeatureValue(29, nullptr).isOk());
    const auto unexpected = [](int32_t, const hidl_vec<uint8_t>&) { FAIL(); };
    EXPECT_FALSE(panel->getDisplayPanelFeatureValue(0, unexpected).isOk()) << "was not answered";
}

TEST_F(HidlCallTest, carriesEveryCallOfHealth) {
    const sp<IHealth> health = proxyOf<IHealth>(new Battery);
    int answers = 0;
    const auto expect = [&](auto wanted) {
        return [&answers, wanted](Result result, const decltype(wanted)& value) {
            answers += result == Result::NOT_SUPPORTED && wanted == value ? 1 : 0;
        };
    };
    EXPECT_TRUE(health->getChargeCounter(expect(1)).isOk());
    EXPECT_TRUE(health->getCurrentNow(expect(2)).isOk());
    EXPECT_TRUE(health->getCurrentAverage(expect(3)).isOk());
    EXPECT_TRUE(health->getCapacity(expect(4)).isOk());
    EXPECT_TRUE(health->getEnergyCounter(expect(5LL << 32)).isOk());
    EXPECT_TRUE(health->getChargeStatus(expect(kFull)).isOk());
    EXPECT_TRUE(health->getStorageInfo(expect(fullInfo().storageInfos)).isOk());
    EXPECT_TRUE(health->getDiskStats(expect(fullInfo().diskStats)).isOk());
    EXPECT_TRUE(health->getHealthInfo(expect(fullInfo())).isOk());
    EXPECT_EQ(9, answers);
    const sp<Listener> listener = new Listener;
    EXPECT_EQ(Result::SUCCESS, health->registerCallback(listener));
    EXPECT_EQ(Result::CALLBACK_DIED, health->update());
    EXPECT_EQ(fullInfo(), listener->mInfo);
    EXPECT_EQ(Result::NOT_FOUND, health->unregisterCallback(new Listener));
    EXPECT_EQ(Result::SUCCESS, health->unregisterCallback(listener));
}

TEST_F(HidlCallTest, refusesRepliesThatAreCutShort) {
    const sp<Relay> relay = new Relay(new Battery);
    const sp<IHealth> health = fromBinder<IHealth>(relay);
    int told = 0;
    const auto count = [&](Result, const HealthInfo&) { ++told; };
    ASSERT_TRUE(health->getHealthInfo(count).isOk());
    for (relay->mLimit = 0; relay->mLimit < relay->mReplyBytes; relay->mLimit += sizeof(int32_t)) {
        EXPECT_FALSE(health->getHealthInfo(count).isOk()) << relay->mLimit;
    }
    EXPECT_EQ(1, told);
}

TEST_F(HidlCallTest, refusesHostileRequests) {
    const sp<IBinder> health = toBinder(new Battery);
    Parcel none;
    Parcel reply;
    EXPECT_EQ(BAD_TYPE, health->transact(IBinder::FIRST_CALL_TRANSACTION, none, &reply));
    Parcel foreign;
    foreign.writeInterfaceToken(String16(IHealth::descriptor));
    foreign.writeStrongBinder(toBinder(new TestCharger));
    EXPECT_EQ(BAD_TYPE, health->transact(IBinder::FIRST_CALL_TRANSACTION, foreign, &reply));
    EXPECT_EQ(UNKNOWN_TRANSACTION,
              health->transact(IBinder::LAST_CALL_TRANSACTION, foreign, &reply));
    for (const uint32_t count : {1u, 0x7fffffffu, UINT32_MAX}) {
        Parcel data;
        data.writeInterfaceToken(String16(IHealthInfoCallback::descriptor));
        for (int word = 0; word < 17; ++word) {
            data.writeInt32(0);  // up to the disks
        }
        data.writeUint32(count);
        const sp<IBinder> listener = toBinder(new Listener);
        EXPECT_EQ(BAD_VALUE, listener->transact(IBinder::FIRST_CALL_TRANSACTION, data, nullptr));
    }
}

}  // namespace
}  // namespace android::hardware
