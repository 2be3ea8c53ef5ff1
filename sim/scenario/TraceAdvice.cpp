#include "sim/scenario/TraceAdvice.h"

#include <algorithm>

namespace sim {

namespace {

bool isNumberWith(char sign, std::string_view text) {
    if (text.starts_with('-')) {
        text.remove_prefix(1);
    }
    const size_t at = text.find(sign);
    const auto isDigit = [](char c) { return c >= '0' && c <= '9'; };
    return at != std::string_view::npos && at > 0 && at + 1 < text.size() &&
           std::ranges::all_of(text.substr(0, at), isDigit) &&
           std::ranges::all_of(text.substr(at + 1), isDigit);
}

}  // namespace

std::string adviceOnHeader(std::string_view line) {
    const std::string rest = " separate the cells here, write commas (and decimal points)";
    return line.starts_with("t;")    ? "; semicolons" + rest
           : line.starts_with("t\t") ? "; tabs" + rest
                                     : "";
}

std::string adviceOnCell(std::string_view cell) {
    if (cell.find(';') != std::string_view::npos) {
        return "; cells are separated by commas, not semicolons";
    }
    if (isNumberWith(',', cell)) {
        return "; the decimal comma is not known here";
    }
    return isNumberWith('.', cell) ? "; °C are written as 1000 m°C each" : "";
}

}  // namespace sim
