#pragma once

#include <hidl_linux/HidlInterface.h>

#include <cstdint>
#include <functional>

namespace vendor::zenta::hardware::displaypanelfeature::V1_0 {

/** What the display panel knows of itself. Thread-safe. */
struct IDisplayPanelFeature
      : public android::hardware::details::HidlInterface<IDisplayPanelFeature> {
    /** `status` is negative when there is no such value. */
    using getDisplayPanelFeatureValue_cb =
            std::function<void(int32_t status, const android::hardware::hidl_vec<uint8_t>& value)>;

    static const char* const descriptor;

    /** The bytes of the value with this number. */
    virtual android::hardware::Return<void> getDisplayPanelFeatureValue(
            uint32_t id, getDisplayPanelFeatureValue_cb callback) = 0;

    static android::sp<IDisplayPanelFeature> _hidl_newProxy(
            const android::sp<android::IBinder>& remote);
    static android::sp<android::BBinder> _hidl_newStubOf(
            const android::sp<IDisplayPanelFeature>& object);
};

}  // namespace vendor::zenta::hardware::displaypanelfeature::V1_0
