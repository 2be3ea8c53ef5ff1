#pragma once

#include <cstddef>
#include <cstdint>

namespace android {

/** Sizes and positions in a parcel stay below this, so that sums of two of them cannot overflow. */
constexpr size_t kMaxParcelBytes = INT32_MAX;

/** Everything in a parcel but `writeUnpadded` takes a multiple of this. */
constexpr size_t kParcelWordBytes = 4;

/** `bytes` must be at most kMaxParcelBytes. */
constexpr size_t paddedSize(size_t bytes) {
    return (bytes + kParcelWordBytes - 1) & ~(kParcelWordBytes - 1);
}

}  // namespace android
