#include "sim/scenario/Trace.h"

#include <errno.h>
#include <string.h>

#include <algorithm>
#include <charconv>
#include <set>

#include "sim/scenario/JsonPlace.h"
#include "sim/scenario/NodeParser.h"
#include "sim/scenario/TraceAdvice.h"

#include "common/NearestName.h"

namespace sim {

namespace {

constexpr size_t kBufferSize = 256 * 1024;
constexpr std::string_view kUnreadable = "null";
constexpr int64_t kMostSeconds = 1000000000;

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

/** Decimal seconds, rounded to milliseconds; none for any other text and out of range. */
std::optional<int64_t> milliseconds(std::string_view text) {
    int64_t seconds = 0;
    const char* const end = text.data() + text.size();
    const auto [at, error] = std::from_chars(text.data(), end, seconds);
    if (error != std::errc() || !isDigit(text.front()) || seconds > kMostSeconds) {
        return std::nullopt;
    }
    int64_t ms = seconds * 1000;
    if (at == end) {
        return ms;
    }
    const std::string_view decimals(at + 1, static_cast<size_t>(end - at - 1));
    if (*at != '.' || !std::ranges::all_of(decimals, isDigit)) {
        return std::nullopt;
    }
    int64_t weight = 100;
    for (size_t i = 0; i < std::min<size_t>(decimals.size(), 3); ++i, weight /= 10) {
        ms += (decimals[i] - '0') * weight;
    }
    return ms + (decimals.size() > 3 && decimals[3] >= '5' ? 1 : 0);
}

/**
 * Cuts a plain number off the begin of a row: what nearly all cells of a long trace are. Without
 * one `rest` stays as it is.
 */
std::optional<int32_t> cutNumber(std::string_view& rest, bool& more) {
    constexpr size_t kMostDigits = 9;  // fit in an int32 whatever they are
    const bool negative = rest.starts_with('-');
    const size_t begin = negative ? 1 : 0;
    size_t end = begin;
    int32_t number = 0;
    for (; end < rest.size() && end - begin < kMostDigits && isDigit(rest[end]); ++end) {
        number = number * 10 + (rest[end] - '0');
    }
    if (end == begin || (end < rest.size() && rest[end] != ',')) {
        return std::nullopt;
    }
    more = end < rest.size();
    rest.remove_prefix(end + (more ? 1 : 0));
    return negative ? -number : number;
}

}  // namespace

TraceReader::TraceReader(const std::string& file, const std::vector<ZoneSpec>& zones)
      : mFile(file), mBuffer(kBufferSize), mZoneTypes(sim::zoneTypes(zones)) {
    open();
    readHeader(&zones);
}

TraceReader::TraceReader(const std::string& file) : mFile(file), mBuffer(kBufferSize) {
    open();
    readHeader(nullptr);
}

void TraceReader::open() {
    mInput.rdbuf()->pubsetbuf(mBuffer.data(), static_cast<std::streamsize>(mBuffer.size()));
    mInput.open(mFile, std::ios::binary);
    if (!mInput) {
        throw ScenarioError(std::string("cannot read the trace (") + strerror(errno) + ")", mFile,
                            "");
    }
}

bool TraceReader::sets(int32_t zone) const {
    return std::ranges::find(mColumns, zone, &Column::zone) != mColumns.end();
}

std::vector<std::string> TraceReader::nodes() const {
    std::vector<std::string> paths;
    for (const Column& column : mColumns) {
        if (column.zone < 0) {
            paths.push_back(column.path);
        }
    }
    return paths;
}

void TraceReader::fail(const std::string& problem) const {
    throw ScenarioError(problem, mFile, "line " + std::to_string(mLineNumber));
}

/** The next line that is not empty, without its end. */
bool TraceReader::readLine() {
    while (std::getline(mInput, mLine)) {
        ++mLineNumber;
        if (!mLine.empty() && mLine.back() == '\r') {
            mLine.pop_back();
        }
        if (!mLine.empty()) {
            return true;
        }
    }
    return false;
}

TraceReader::Column TraceReader::column(const std::string& name,
                                        const std::vector<ZoneSpec>* zones) {
    if (name.starts_with('/')) {
        if (!isNodePath(name)) {
            fail("the column \"" + name + "\" is no absolute path without \"..\"");
        }
        return {-1, name};
    }
    if (zones != nullptr) {
        return zoneColumn(name, *zones);
    }
    mZoneTypes.push_back(name);
    return {static_cast<int32_t>(mZoneTypes.size()) - 1, ""};
}

TraceReader::Column TraceReader::zoneColumn(const std::string& name,
                                            const std::vector<ZoneSpec>& zones) const {
    if (const auto index = uniqueZone(zones, name)) {
        return {*index, ""};
    }
    if (std::ranges::find(mZoneTypes, name) != mZoneTypes.end()) {
        fail("more than one zone has the type \"" + name + "\"");
    }
    fail("the column \"" + name + "\" is no zone of the scenario" +
         common::suggestion(name, mZoneTypes));
}

void TraceReader::readHeader(const std::vector<ZoneSpec>* zones) {
    bool more = readLine();
    std::string_view rest = mLine;
    if (!more || nextCell(rest, more) != "t") {
        mLineNumber = std::max<int64_t>(mLineNumber, 1);  // an empty file misses its first line
        fail("expected a header that begins with the column t" + adviceOnHeader(mLine));
    }
    std::set<std::string> seen;
    while (more) {
        const std::string name(nextCell(rest, more));
        if (!seen.insert(name).second) {
            fail("the column \"" + name + "\" stands twice in the header");
        }
        mColumns.push_back(column(name, zones));
    }
}

std::string_view TraceReader::nextCell(std::string_view& rest, bool& more) {
    if (!rest.empty() && rest.front() == '"') {
        const std::string_view cell = quotedCell(rest);
        more = !rest.empty();
        rest.remove_prefix(more ? 1 : 0);
        return cell;
    }
    const size_t comma = rest.find(',');
    more = comma != std::string_view::npos;
    const std::string_view cell = rest.substr(0, comma);
    rest.remove_prefix(more ? comma + 1 : rest.size());
    return cell;
}

std::string_view TraceReader::quotedCell(std::string_view& rest) {
    mUnquoted.clear();
    size_t at = 1;
    for (;; ++at) {
        if (at >= rest.size()) {
            fail("a quoted cell has no end in its line");
        }
        if (rest[at] == '"') {
            if (at + 1 >= rest.size() || rest[at + 1] != '"') {
                break;
            }
            ++at;  // a doubled quote stands for one
        }
        mUnquoted.push_back(rest[at]);
    }
    rest.remove_prefix(at + 1);
    if (!rest.empty() && rest.front() != ',') {
        fail("expected a comma after a quoted cell");
    }
    return mUnquoted;
}

int64_t TraceReader::readTime(std::string_view cell) const {
    const auto ms = milliseconds(cell);
    if (!ms) {
        fail("t: expected seconds from 0 to 1000000000" + adviceOnCell(cell));
    }
    if (*ms < mLastTimeMs) {
        fail("t goes back");
    }
    return *ms;
}

void TraceReader::readCell(const Column& column, std::string_view cell, TraceRow& row) const {
    if (cell.empty()) {
        return;
    }
    const bool unreadable = cell == kUnreadable;
    if (column.zone < 0) {
        row.nodes.push_back(
                {column.path, unreadable ? std::nullopt : std::optional(std::string(cell))});
        return;
    }
    if (unreadable) {
        row.zones.push_back({column.zone, std::nullopt});
        return;
    }
    int32_t temp = 0;
    const char* const end = cell.data() + cell.size();
    const auto [at, error] = std::from_chars(cell.data(), end, temp);
    if (error != std::errc() || at != end) {
        fail("\"" + std::string(cell) + "\": expected a whole number of m°C, null or nothing" +
             adviceOnCell(cell));
    }
    row.zones.push_back({column.zone, temp});
}

bool TraceReader::next(TraceRow& row) {
    row.zones.clear();
    row.nodes.clear();
    if (!readLine()) {
        if (mInput.bad()) {
            throw ScenarioError("cannot read the trace", mFile, "");
        }
        return false;
    }
    std::string_view rest = mLine;
    bool more = false;
    mLastTimeMs = row.timeMs = readTime(nextCell(rest, more));
    for (const Column& column : mColumns) {
        if (!more) {
            failCells(rest, more);
        }
        const auto temp = column.zone >= 0 ? cutNumber(rest, more) : std::nullopt;
        if (temp) {
            row.zones.push_back({column.zone, temp});
        } else {
            readCell(column, nextCell(rest, more), row);
        }
    }
    if (more) {
        failCells(rest, more);
    }
    return true;
}

void TraceReader::failCells(std::string_view rest, bool more) {
    const std::string expected = "expected " + std::to_string(mColumns.size() + 1) + " cells";
    if (!more) {
        fail(expected);
    }
    size_t found = mColumns.size() + 1;
    for (; more; ++found) {
        nextCell(rest, more);
    }
    fail(expected + ", found " + std::to_string(found) + "; a comma is no decimal sign here");
}

}  // namespace sim
