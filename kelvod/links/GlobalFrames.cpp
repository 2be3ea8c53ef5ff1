#include "links/GlobalFrames.h"

#include <binder/IServiceManager.h>
#include <binder/Parcel.h>
#include <utils/String16.h>

#include "base/Log.h"
#include "links/PatientCaller.h"

namespace kelvo {

namespace {

constexpr uint32_t kGlobalFramesCode = 1013;

int32_t askCompositor() {
    const android::sp<android::IServiceManager> services = android::defaultServiceManager();
    if (services == nullptr) {
        KLOGE("Unable to get default service manager!");
        return -1;
    }
    // Not getService(), which would wait seconds for a compositor that is not there.
    const android::sp<android::IBinder> compositor =
            services->checkService(android::String16("SurfaceFlinger"));
    if (compositor == nullptr) {
        KLOGE("unable to get surfaceflinger");
        return -1;
    }
    android::Parcel data;
    android::Parcel reply;
    data.writeInterfaceToken(android::String16("android.ui.ISurfaceComposer"));
    if (compositor->transact(kGlobalFramesCode, data, &reply) != android::OK) {
        return -1;
    }
    return reply.readInt32();
}

}  // namespace

int32_t getGlobalFrames() {
    // Never destroyed: a call may be out while the process ends.
    static PatientCaller& compositor = *new PatientCaller("the display compositor");
    return compositor.ask(-1, askCompositor);
}

}  // namespace kelvo
