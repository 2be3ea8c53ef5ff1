#pragma once

#include <string>
#include <string_view>

namespace sim {

/** What else a first line without the column t separates its cells with; empty: nothing known. */
std::string adviceOnHeader(std::string_view line);

/** What is probably meant by a cell that is no number of m°C or seconds; empty: nothing known. */
std::string adviceOnCell(std::string_view cell);

}  // namespace sim
