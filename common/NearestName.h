#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace common {

/** The nearest of the known names, when it is near enough to be meant. */
std::optional<std::string> nearestName(std::string_view name,
                                       const std::vector<std::string>& known);

/** The nearest that differs by so many letters at most. */
std::optional<std::string> nearestName(std::string_view name, const std::vector<std::string>& known,
                                       size_t most);

/** ", did you mean \"cpu\"?" for the nearest of the known names, empty when none is near. */
std::string suggestion(std::string_view name, const std::vector<std::string>& known);

}  // namespace common
