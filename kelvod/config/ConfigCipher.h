#pragma once

#include <string>

namespace kelvo {

/**
 * Takes the JSON text out of a stored configuration file: AES-128-CBC with the built-in key over a
 * 32-bit little-endian length, the text, and up to 16 bytes of filler. 0, or -1 with `out`
 * untouched; the log says why. Thread-safe.
 */
int decryptConfig(const std::string& in, std::string& out);

}  // namespace kelvo
