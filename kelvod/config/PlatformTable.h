#pragma once

#include <cstdint>
#include <string_view>

namespace kelvo {

/** Name of the platform at an index of the table, empty outside of it. Pure. */
const char* platformNameAt(int32_t index);

/** Index of the platform that a kernel's chip identifier means, or -1. Pure. */
int32_t platformOfChip(int32_t chipId);

/** Whether a phone can report this platform name: it has a chip identifier. Pure. */
bool isDetectablePlatform(std::string_view name);

}  // namespace kelvo
