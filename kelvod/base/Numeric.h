#pragma once

#include <algorithm>
#include <cstdint>
#include <limits>

namespace kelvo {

/**
 * Floating to integer conversion as ARM64 does it in hardware: truncates toward zero, saturates at
 * the ends of the range, NaN gives 0. Used everywhere so that x86-64 gives the same results.
 */
inline int32_t saturatingInt32(double value) {
    if (value != value) {
        return 0;
    }
    // Both bounds are exact as doubles; the upper one is the first value that does not fit.
    if (value >= 2147483648.0) {
        return std::numeric_limits<int32_t>::max();
    }
    if (value <= -2147483649.0) {
        return std::numeric_limits<int32_t>::min();
    }
    return static_cast<int32_t>(value);
}

/** A wider integer, held at the ends of the range. */
inline int32_t clampToInt32(int64_t value) {
    return static_cast<int32_t>(std::clamp<int64_t>(value, std::numeric_limits<int32_t>::min(),
                                                    std::numeric_limits<int32_t>::max()));
}

/** 32-bit sum, difference and product that wrap in two's complement. */
inline int32_t wrappingAdd(int32_t a, int32_t b) {
    return static_cast<int32_t>(static_cast<uint32_t>(a) + static_cast<uint32_t>(b));
}
inline int32_t wrappingSub(int32_t a, int32_t b) {
    return static_cast<int32_t>(static_cast<uint32_t>(a) - static_cast<uint32_t>(b));
}
inline int32_t wrappingMul(int32_t a, int32_t b) {
    return static_cast<int32_t>(static_cast<uint32_t>(a) * static_cast<uint32_t>(b));
}

/** 64-bit product, likewise. */
inline int64_t wrappingMul64(int64_t a, int64_t b) {
    return static_cast<int64_t>(static_cast<uint64_t>(a) * static_cast<uint64_t>(b));
}

}  // namespace kelvo
