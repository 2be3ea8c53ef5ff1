#pragma once

#include <string>
#include <string_view>

namespace common {

/**
 * A configuration file as the daemon stores it: length (32 bits, little-endian), text and filler up
 * to a multiple of 16 bytes, AES-128-CBC without further padding. The text is stored as it stands.
 * Throws std::runtime_error when libcrypto refuses, which it does only out of memory.
 */
std::string encryptConfig(std::string_view json);

}  // namespace common
