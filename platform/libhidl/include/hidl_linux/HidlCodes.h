#pragma once

#include <cstdint>

namespace android::hardware::details {

/** Transaction codes of the calls that every interface has, as on Android. */
enum BaseCode : uint32_t {
    kNotifySyspropsChanged = 0x0f535953,  // "SYS"
    kPing = 0x0f504e47,                   // "PNG"
    kInterfaceDescriptor = 0x0f445343,    // "DSC"
    kInterfaceChain = 0x0f43484e,         // "CHN"
};

}  // namespace android::hardware::details
