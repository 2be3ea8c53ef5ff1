#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace kelvo {

/** Values with a blank between them, as the log has them. */
std::string joinValues(const std::vector<int32_t>& values);

}  // namespace kelvo
