#include "sim/services/QuorixService.h"

#include <binder/Parcel.h>

#include <memory>

#include "sim/services/PublishedBinder.h"
#include "sim/services/UsageMessage.h"

namespace sim {

namespace {

using android::IBinder;
using android::Parcel;
using android::sp;
using android::status_t;
using android::String16;

enum Code : uint32_t {
    kRegisterListener = 19,
    kInformEvent = 22,
    kInformUsage = 1,  // of the listener
};
constexpr char kListenerDescriptor[] = "com.zenta.pelko.IZentaQuorixModuleUsage";
constexpr int32_t kVersion = 1;  // of our interface

class Engine : public android::BBinder {
  public:
    explicit Engine(const ServiceContext& context) : mContext(context) {}

    const String16& getInterfaceDescriptor() const override {
        static const String16 kDescriptor("com.zenta.pelko.IZentaQuorix");
        return kDescriptor;
    }

    /** Sends a report to whom it may concern. */
    void report(const std::vector<uint8_t>& bytes) {
        const sp<IBinder> known = listener();
        if (known == nullptr) {
            return;
        }
        Parcel data;
        Parcel reply;
        data.writeInterfaceToken(String16(kListenerDescriptor));
        data.writeInt32(kVersion);
        data.writeByteVector(bytes);
        if (known->transact(kInformUsage, data, &reply) == android::DEAD_OBJECT) {
            forget(known);
        }
    }

  protected:
    status_t onTransact(uint32_t code, const Parcel& data, Parcel* reply, uint32_t flags) override {
        if (code != kRegisterListener && code != kInformEvent) {
            return BBinder::onTransact(code, data, reply, flags);
        }
        if (!data.checkInterface(this)) {
            return android::BAD_TYPE;
        }
        const int32_t value = data.readInt32();
        const bool registers = code == kRegisterListener;
        if (registers) {
            learn(data.readStrongBinder());
        }
        reply->writeNoException();
        reply->writeInt32(0);
        mContext.onEvent(
                {0, "quorix", {{"call", registers ? "register" : "inform"}, {"value", value}}});
        if (registers) {
            mContext.onClient();
        }
        return android::OK;
    }

  private:
    sp<IBinder> listener() const {
        const android::Mutex::Autolock lock(mMutex);
        return mListener;
    }
    void learn(const sp<IBinder>& listener) {
        const android::Mutex::Autolock lock(mMutex);
        mListener = listener;
    }
    void forget(const sp<IBinder>& listener) {
        const android::Mutex::Autolock lock(mMutex);
        if (mListener == listener) {
            mListener = nullptr;
        }
    }

    const ServiceContext mContext;
    mutable android::Mutex mMutex;  // guards the listener; a leaf
    sp<IBinder> mListener GUARDED_BY(mMutex);
};

}  // namespace

struct QuorixService::Parts {
    explicit Parts(const ServiceContext& context)
          : engine(new Engine(context)), published("quorix", engine) {}

    const sp<Engine> engine;
    const PublishedBinder published;
};

QuorixService::QuorixService(const ServiceContext& context)
      : mParts(std::make_unique<Parts>(context)) {}

QuorixService::~QuorixService() = default;

void QuorixService::perform(const Deed& deed) {
    if (const auto* const usage = std::get_if<Usage>(&deed)) {
        mParts->engine->report(usageMessage(*usage));
    } else if (const auto* const raw = std::get_if<UsageBytes>(&deed)) {
        mParts->engine->report({raw->bytes.begin(), raw->bytes.end()});
    }
}

}  // namespace sim
