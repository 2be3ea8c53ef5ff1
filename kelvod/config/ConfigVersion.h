#pragma once

#include <string>

namespace kelvo {

/** What stands for a version that is missing. */
inline constexpr char kNoVersion[] = "noversion";

/** The text at "config_version" of the configuration, or kNoVersion. */
std::string configVersion();

}  // namespace kelvo
