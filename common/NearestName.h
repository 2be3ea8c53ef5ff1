#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace common {

/** The nearest of the known names, when it is near enough to be meant. */
std::optional<std::string> nearestName(std::string_view name,
                                       const std::vector<std::string>& known);

/** ", did you mean \"cpu\"?" for the nearest of the known names, empty when none is near. */
std::string suggestion(std::string_view name, const std::vector<std::string>& known);

}  // namespace common
