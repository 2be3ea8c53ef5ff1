#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "recording/Series.h"

// How a page keeps its figures: as base64 of the changes alone, a byte or two each.

/** Times of rows, ascending; columns are coded against them. */
using RowTimes = std::vector<int64_t>;  // ms since t = 0

/**
 * Codes a column of figures that hold until the next one. What it is made of, each number coded
 * in sevens of bits with the lowest first:
 *
 *     block: rows since the end of the block before, number of rows, an entry for each
 *     entry: 0 for a gap, else 1 + the zigzag of the difference to the figure before
 */
class ColumnCode {
  public:
    /** Rows come in ascending order. */
    void add(size_t row, std::optional<int64_t> value);
    std::string base64();

  private:
    void endBlock();

    std::string mBytes;
    std::string mBlock;  // entries of the block that has not ended
    size_t mBlockRows = 0;
    size_t mBlockStart = 0;
    size_t mNextRow = 0;   // the row after the latest
    size_t mBlockEnd = 0;  // the row after the latest block that has ended
    int64_t mLast = 0;
};

/** Each point of the series is at one of the times. */
std::string columnOf(const Series& series, const RowTimes& times);
/** The steps between the times, which is little where they are even. */
std::string columnOf(const RowTimes& times);
