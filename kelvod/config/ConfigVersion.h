#pragma once

#include <string>

namespace kelvo {

/** The text at "config_version" of the configuration; "noversion" when there is none. */
std::string configVersion();

}  // namespace kelvo
