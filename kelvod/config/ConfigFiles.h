#pragma once

#include <string>

#include "config/ConfigNames.h"

namespace kelvo {

/** A main file without this text anywhere is taken for a wrong one. */
inline constexpr const char* kMainFileMark = key::kTempThresholdDown;

/**
 * Chooses the newest readable file of `count` candidates (of equally new ones the later candidate),
 * reads and decrypts it: `raw` gets the bytes of the file, `json` its text. Paths are the phone's
 * own. Index of the file, or -1; the log says why. Thread-safe.
 */
int getFileContents(const std::string* paths, int count, std::string& raw, std::string& json);

}  // namespace kelvo
