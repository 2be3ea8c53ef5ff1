#include "report/ColumnCode.h"

#include <algorithm>
#include <string_view>

namespace {

void putNumber(std::string& bytes, uint64_t number) {
    for (; number >= 0x80U; number >>= 7U) {
        bytes.push_back(static_cast<char>((number & 0x7FU) | 0x80U));
    }
    bytes.push_back(static_cast<char>(number));
}

uint64_t zigzag(int64_t value) {
    return (static_cast<uint64_t>(value) << 1U) ^ (value < 0 ? ~uint64_t{0} : 0);
}

std::string toBase64(std::string_view bytes) {
    constexpr std::string_view kDigits =
            "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    std::string text;
    text.reserve((bytes.size() + 2) / 3 * 4);
    for (size_t i = 0; i < bytes.size(); i += 3) {
        const size_t count = std::min<size_t>(3, bytes.size() - i);
        uint32_t group = 0;
        for (size_t j = 0; j < 3; ++j) {
            group = group << 8U | (j < count ? static_cast<unsigned char>(bytes[i + j]) : 0U);
        }
        for (size_t j = 0; j < 4; ++j) {
            text += j <= count ? kDigits[group >> (18 - 6 * j) & 0x3FU] : '=';
        }
    }
    return text;
}

}  // namespace

void ColumnCode::add(size_t row, std::optional<int64_t> value) {
    if (mBlockRows > 0 && row != mNextRow) {
        endBlock();
    }
    if (mBlockRows == 0) {
        mBlockStart = row;
    }
    putNumber(mBlock, value ? 1 + zigzag(*value - mLast) : 0);
    mLast = value.value_or(mLast);
    ++mBlockRows;
    mNextRow = row + 1;
}

void ColumnCode::endBlock() {
    putNumber(mBytes, mBlockStart - mBlockEnd);
    putNumber(mBytes, mBlockRows);
    mBytes += mBlock;
    mBlock.clear();
    mBlockRows = 0;
    mBlockEnd = mNextRow;
}

std::string ColumnCode::base64() {
    if (mBlockRows > 0) {
        endBlock();
    }
    return toBase64(mBytes);
}

std::string columnOf(const Series& series, const RowTimes& times) {
    ColumnCode code;
    size_t row = 0;
    for (const Series::Point& point : series.points()) {
        while (row < times.size() && times[row] < point.timeMs) {
            ++row;
        }
        code.add(row, point.value);
    }
    return code.base64();
}

std::string columnOf(const RowTimes& times) {
    ColumnCode code;
    int64_t last = 0;
    int64_t lastStep = 0;
    for (size_t row = 0; row < times.size(); ++row) {
        const int64_t step = times[row] - last;
        if (row == 0 || step != lastStep) {
            code.add(row, step);
        }
        last = times[row];
        lastStep = step;
    }
    return code.base64();
}
