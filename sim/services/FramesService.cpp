#include "sim/services/FramesService.h"

#include <binder/Parcel.h>

namespace sim {

namespace {

using android::Parcel;
using android::status_t;
using android::String16;

constexpr uint32_t kGetGlobalFrames = 1013;  // transaction code

class Compositor : public android::BBinder {
  public:
    explicit Compositor(const ServiceContext& context) : mContext(context) {}

    const String16& getInterfaceDescriptor() const override {
        static const String16 kDescriptor("android.ui.ISurfaceComposer");
        return kDescriptor;
    }

  protected:
    status_t onTransact(uint32_t code, const Parcel& data, Parcel* reply, uint32_t flags) override {
        if (code != kGetGlobalFrames) {
            return BBinder::onTransact(code, data, reply, flags);
        }
        return data.checkInterface(this) && data.dataAvail() == 0
                       ? reply->writeInt32(mContext.values.get().frames)
                       : android::PERMISSION_DENIED;
    }

  private:
    const ServiceContext mContext;
};

}  // namespace

FramesService::FramesService(const ServiceContext& context)
      : mPublished("SurfaceFlinger", new Compositor(context)) {}

}  // namespace sim
