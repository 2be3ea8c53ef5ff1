#include "links/GlobalFrames.h"

#include <binder/Binder.h>
#include <binder/Parcel.h>
#include <binder_linux/LocalServiceManager.h>
#include <gtest/gtest.h>

#include "support/LogCapture.h"

namespace {

/** A display compositor that has drawn 77 frames. */
class Compositor : public android::BBinder {
  protected:
    android::status_t onTransact(uint32_t code, const android::Parcel& data, android::Parcel* reply,
                                 uint32_t) override {
        const android::String16 token("android.ui.ISurfaceComposer");
        if (code != 1013 || !data.enforceInterface(token) || data.dataAvail() != 0) {
            return android::UNKNOWN_TRANSACTION;
        }
        return reply->writeInt32(77);
    }
};

}  // namespace

TEST(GlobalFrames, areAskedOfTheCompositor) {
    const android::sp<android::IServiceManager> services = android::installLocalServiceManager();
    LogCapture log;
    EXPECT_EQ(kelvo::getGlobalFrames(), -1);
    EXPECT_EQ(log.count(ANDROID_LOG_ERROR, "unable to get surfaceflinger"), 1U);
    services->addService(android::String16("SurfaceFlinger"), new Compositor());
    EXPECT_EQ(kelvo::getGlobalFrames(), 77);
}
