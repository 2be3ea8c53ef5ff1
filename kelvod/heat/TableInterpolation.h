#pragma once

#include <cstddef>
#include <vector>

/**
 * Column `y` of a table at `at` in its ascending column `x`, by straight lines between rows; above
 * the last row the line of the last two goes on, at or below the first row the answer is 0. A
 * single row, and two of the same x, hold their own y from there on. Pure.
 */
template <typename Row>
float interpolateTable(const std::vector<Row>& rows, float Row::*x, float Row::*y, float at) {
    size_t below = rows.size();  // the highest row strictly below
    while (below > 0 && !(rows[below - 1].*x < at)) {
        --below;
    }
    if (below == 0) {
        return 0.0F;
    }
    const size_t last = rows.size() - 1;
    const size_t from = below - 1 < last || last == 0 ? below - 1 : last - 1;
    if (last == 0 || rows[from].*x == rows[from + 1].*x) {
        return rows[below - 1].*y;
    }
    const Row& lower = rows[from];
    const Row& upper = rows[from + 1];
    return lower.*y + (at - lower.*x) * (upper.*y - lower.*y) / (upper.*x - lower.*x);
}
