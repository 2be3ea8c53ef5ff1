// What the services of the phone answer the daemon and tell its callbacks, each replaced by one
// that says what the input has. A step of the input: which service, what it does, a transaction
// code, how long it stands so, and counted bytes.

#include <aidl/android/hardware/health/IHealth.h>
#include <aidl/vendor/zenta/hardware/performance/IPerformance.h>
#include <android/hardware/health/2.0/IHealth.h>
#include <binder/Parcel.h>
#include <hidl_linux/HidlCodes.h>
#include <hidl_linux/HidlWire.h>
#include <hidl_linux/ServiceManagement.h>
#include <vendor/zenta/hardware/charger/1.0/ICharger.h>
#include <vendor/zenta/hardware/displaypanelfeature/1.0/IDisplayPanelFeature.h>

#include <array>
#include <optional>
#include <string>
#include <vector>

#include "FuzzPhone.h"
#include "Input.h"
#include "links/HidlHealthInfoListener.h"
#include "links/IZentaQuorix.h"
#include "service/ServiceCodes.h"
#include "sim/services/AidlHealthService.h"
#include "sim/services/PerformanceService.h"
#include "sim/services/PublishedBinder.h"

namespace {

using android::IBinder;
using android::Parcel;
using android::sp;
using android::status_t;
using android::String16;
using android::hardware::hidl_string;
using android::hardware::hidl_vec;
using android::hardware::details::Wire;

constexpr size_t kMostSteps = 32;
constexpr int32_t kHeatMonitored = 45000;
constexpr int32_t kStartMonitor = 1;  // of COMPONENT_HEAT_TEST
constexpr int32_t kStartFeed = 5;
constexpr std::array<uint8_t, 8> kGood{};  // no exception, and 0 for who looks at a number
constexpr size_t kMostArguments = 2;       // before the callback of a registration

/** A service that answers every call with the same bytes, and knows who wants to be called back. */
class Peer : public android::BBinder {
  public:
    Peer(std::string name, const String16& descriptor)
          : mName(std::move(name)), mDescriptor(descriptor) {}

    const String16& getInterfaceDescriptor() const override { return mDescriptor; }
    void answer(Bytes bytes, status_t status = android::OK) {
        mAnswer.assign(bytes.begin(), bytes.end());
        mStatus = status;
    }
    /** Dies if it is there, and is there again. */
    void publish() {
        mCallback = nullptr;
        mPublished.reset();
        mPublished.emplace(mName, sp<IBinder>(this));
    }
    void callBack(uint32_t code, bool token, Bytes bytes) {
        if (mCallback == nullptr) {
            return;
        }
        Parcel request;
        Parcel reply;
        if (token) {
            request.writeInterfaceToken(mCallback->getInterfaceDescriptor());
        }
        request.write(bytes.data(), bytes.size());
        request.setDataPosition(0);
        mCallback->transact(code, request, &reply);
    }

  protected:
    status_t onTransact(uint32_t code, const Parcel& data, Parcel* reply, uint32_t flags) override {
        if (code == android::hardware::details::kInterfaceChain) {
            reply->writeInt32(0);
            const hidl_vec<hidl_string> chain{android::String8(mDescriptor).c_str()};
            return Wire<hidl_vec<hidl_string>>::write(reply, chain);
        }
        if (code > LAST_CALL_TRANSACTION) {
            return BBinder::onTransact(code, data, reply, flags);
        }
        keepCallback(data);
        if (reply != nullptr) {
            reply->write(mAnswer.data(), mAnswer.size());
        }
        return mStatus;
    }

  private:
    void keepCallback(const Parcel& data) {
        if (!data.enforceInterface(mDescriptor)) {
            return;
        }
        for (size_t i = 0; i <= kMostArguments; ++i) {
            const size_t position = data.dataPosition();
            sp<IBinder> binder;
            if (data.readStrongBinder(&binder) == android::OK) {
                mCallback = binder;
                return;
            }
            data.setDataPosition(position + sizeof(int32_t));
        }
    }

    const std::string mName;
    const String16 mDescriptor;
    std::vector<uint8_t> mAnswer;
    status_t mStatus = android::OK;
    sp<IBinder> mCallback;
    std::optional<sim::PublishedBinder> mPublished;
};

sp<Peer> hidlPeer(const char* descriptor) {
    return new Peer(android::hardware::details::serviceName(descriptor, "default"),
                    String16(descriptor));
}

sp<Peer> ndkPeer(const char* name, const char* descriptor) {
    return new Peer(name, String16(descriptor));
}

class Phone {
  public:
    static Phone& get() {
        static auto* const phone = new Phone;
        return *phone;
    }

    void act(Input& input) {
        Peer& peer = *input.oneOf(mPeers);
        const uint8_t how = input.byte();
        const uint32_t code = input.byte();
        const int64_t time = input.byte() % 8 * 500;
        const Bytes bytes = input.counted();
        switch (how % 4) {
            case 0:
                peer.answer(bytes, -(how / 4));
                break;
            case 1:
                peer.publish();
                mPhone.tell(kelvo::COMPONENT_HEAT_TEST, kStartFeed);
                mPhone.tell(kelvo::SET_SCREEN_STATUS, how / 4 % 2);
                break;
            default:
                peer.callBack(code, how < 0x80, bytes);
        }
        mPhone.run(time);
    }
    /** They answer well, and are found again by whoever has lost them. */
    void settle() {
        for (const sp<Peer>& peer : mPeers) {
            peer->answer(kGood);
        }
        mPhone.askAll();
        mPhone.run(6000);
    }

  private:
    Phone() : mHealth(new HidlHealthInfoListener({[](bool) {}, [](const std::string&) {}})) {
        for (const char* name : {"health", "performance", "charger", "panel", "frames", "quorix"}) {
            mPhone.perform(sim::ServiceState{name, false});
        }
        for (const sp<Peer>& peer : mPeers) {
            peer->answer(kGood);
            peer->publish();
        }
        mHealth->init();
        mPhone.setZones(kHeatMonitored);
        mPhone.tell(kelvo::COMPONENT_HEAT_TEST, kStartMonitor);
    }

    const std::array<sp<Peer>, 7> mPeers{
            ndkPeer(sim::AidlHealthService::kInstance,
                    aidl::android::hardware::health::IHealth::descriptor),
            hidlPeer(android::hardware::health::V2_0::IHealth::descriptor),
            ndkPeer(sim::PerformanceService::kInstance,
                    aidl::vendor::zenta::hardware::performance::IPerformance::descriptor),
            hidlPeer(vendor::zenta::hardware::charger::V1_0::ICharger::descriptor),
            hidlPeer(vendor::zenta::hardware::displaypanelfeature::V1_0::IDisplayPanelFeature::
                             descriptor),
            ndkPeer("SurfaceFlinger", "android.ui.ISurfaceComposer"),
            new Peer("quorix", kelvo::IZentaQuorix::descriptor),
    };
    FuzzPhone& mPhone = FuzzPhone::get("charge");  // asks all of them
    const sp<HidlHealthInfoListener> mHealth;
};

}  // namespace

void fuzzPeers(Bytes data) {
    Phone& phone = Phone::get();
    Input input(data);
    for (size_t i = 0; i < kMostSteps && !input.empty(); ++i) {
        phone.act(input);
    }
    phone.settle();
}
