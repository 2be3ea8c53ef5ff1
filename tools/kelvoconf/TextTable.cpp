#include "TextTable.h"

#include <algorithm>

namespace kelvoconf {

namespace {

bool isNumber(const std::string& cell) {
    return !cell.empty() && cell.find_first_not_of("-+.0123456789e") == std::string::npos;
}

/** A column of numbers has its heading above their last digits. */
bool standsRight(const std::vector<std::vector<std::string>>& rows, size_t column) {
    bool some = false;
    for (size_t i = 1; i < rows.size(); ++i) {
        if (column < rows[i].size() && !rows[i][column].empty()) {
            if (!isNumber(rows[i][column])) {
                return false;
            }
            some = true;
        }
    }
    return some && column > 0;
}

/** Columns that a text takes on a terminal: its characters, not its bytes. */
size_t widthOf(const std::string& text) {
    return static_cast<size_t>(std::ranges::count_if(
            text, [](char c) { return (static_cast<unsigned char>(c) & 0xC0U) != 0x80U; }));
}

}  // namespace

std::string TextTable::text(const std::string& indent) const {
    const size_t columns = mRows.front().size();
    std::vector<size_t> widths(columns);
    std::vector<bool> right(columns);
    for (size_t column = 0; column < columns; ++column) {
        right[column] = standsRight(mRows, column);
        for (const auto& row : mRows) {
            widths[column] =
                    std::max(widths[column], column < row.size() ? widthOf(row[column]) : 0);
        }
    }
    std::string text;
    for (const auto& row : mRows) {
        std::string line = indent;
        for (size_t column = 0; column < row.size(); ++column) {
            const std::string blanks(widths[column] - widthOf(row[column]), ' ');
            line += (column == 0 ? "" : "  ") +
                    (right[column] ? blanks + row[column] : row[column] + blanks);
        }
        line.erase(line.find_last_not_of(' ') + 1);
        text += line + "\n";
    }
    return text;
}

}  // namespace kelvoconf
