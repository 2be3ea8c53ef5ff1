#pragma once

#include <cstdint>

namespace kelvo {

/** The display compositor's frame counter, or -1 when it does not answer. Thread-safe. */
int32_t getGlobalFrames();

}  // namespace kelvo
