#pragma once

#include <hidl_linux/HidlString.h>
#include <hidl_linux/HidlVec.h>
#include <utils/RefBase.h>
#include <utils/StrongPointer.h>

#include <cstdint>

namespace android {

namespace hidl::base::V1_0 {
struct IBase;
}

namespace hardware {

/**
 * Learns that the process of a service has ended. The link holds it weakly: whoever links keeps it.
 */
struct hidl_death_recipient : public virtual RefBase {
    /**
     * On a binder thread, once for each link. `cookie` is what the link was made with, `who` the
     * object it was made on.
     */
    virtual void serviceDied(uint64_t cookie, const wp<hidl::base::V1_0::IBase>& who) = 0;
};

}  // namespace hardware
}  // namespace android
