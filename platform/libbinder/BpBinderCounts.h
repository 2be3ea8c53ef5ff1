#pragma once

#include <cstdint>

namespace android {

/** In place of a uid: a proxy that is not counted. */
constexpr int32_t kUncounted = -1;

}  // namespace android
