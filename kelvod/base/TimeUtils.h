#pragma once

#include <string>

namespace kelvo {

/** Local time `seconds` after the epoch as "YYYYMMDDhhmmss"; empty when it cannot be converted. */
std::string getTimestamp(long seconds);
/** The same for the present wall-clock time. */
std::string getTimestamp();

/** The current local day as "YYYYMMDD"; empty when it cannot be converted. */
std::string getLocalDay();

}  // namespace kelvo
