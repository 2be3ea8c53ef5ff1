#pragma once

#include <string_view>

/** A file of the folder page/, as it was when the program was built; empty for any other name. */
std::string_view pageAsset(std::string_view name);
