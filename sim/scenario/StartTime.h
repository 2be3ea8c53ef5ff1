#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace sim {

/**
 * Nanoseconds since the epoch of "2026-03-01T08:00:00Z", with up to nine decimals of a second;
 * none for any other form and outside 1970 to 2200.
 */
std::optional<int64_t> parseStartTime(std::string_view text);

}  // namespace sim
