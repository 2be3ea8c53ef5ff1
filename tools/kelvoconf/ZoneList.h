#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace kelvoconf {

/** A zone of a list, whose number is its place. */
struct ListedZone {
    std::string type;
    std::optional<int32_t> sample;  // m°C; none: the list has none
};

/**
 * Reads a list of zones: a type a line (empty lines and lines that begin with "#" do not count), or
 * what `draft --zones-only` prints, as a table or with --json. `name` is for messages. Throws
 * Failure, also for a text that has no zone or is no text.
 */
std::vector<ListedZone> readZoneList(const std::string& text, const std::string& name);

}  // namespace kelvoconf
