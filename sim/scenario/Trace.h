#pragma once

#include <cstdint>
#include <fstream>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "sim/scenario/Scenario.h"

namespace sim {

/** What one row of a trace sets. */
struct TraceRow {
    int64_t timeMs = 0;
    std::vector<ZoneChange> zones;
    std::vector<NodeChange> nodes;
};

/**
 * Reads a trace row by row, so that memory does not grow with its length. The header names `t` and
 * then zone types or node paths; an empty cell leaves its zone or node as it is, `null` makes it
 * unreadable. Times are in seconds and never go back. Throws ScenarioError with the line.
 * Not thread-safe.
 */
class TraceReader {
  public:
    /** Opens the file and reads its header. */
    TraceReader(const std::string& file, const std::vector<ZoneSpec>& zones);
    /** For no phone in particular: each column but t and nodes is a zone, numbered from 0. */
    explicit TraceReader(const std::string& file);

    /** Types of the zones of this trace in the order of their numbers. */
    const std::vector<std::string>& zoneTypes() const { return mZoneTypes; }
    /** Reads the next row into `row`, whose storage is reused; false at the end of the file. */
    bool next(TraceRow& row);

    /** Whether a column sets thermal_zone`zone`. */
    bool sets(int32_t zone) const;
    /** The line of the last row read, from 1. */
    int64_t line() const { return mLineNumber; }
    /** Paths of the nodes that columns set. */
    std::vector<std::string> nodes() const;

  private:
    struct Column {
        int32_t zone;      // -1: a node
        std::string path;  // of the node
    };

    void open();
    bool readLine();
    void readHeader(const std::vector<ZoneSpec>* zones);
    Column column(const std::string& name, const std::vector<ZoneSpec>* zones);
    Column zoneColumn(const std::string& name, const std::vector<ZoneSpec>& zones) const;
    /** Cuts the next cell off `rest`; the view lives until the next call. */
    std::string_view nextCell(std::string_view& rest, bool& more);
    std::string_view quotedCell(std::string_view& rest);
    void readCell(const Column& column, std::string_view cell, TraceRow& row) const;
    int64_t readTime(std::string_view cell) const;
    /** For a row of another number of cells, of which `rest` is not read yet. */
    [[noreturn]] void failCells(std::string_view rest, bool more);
    [[noreturn]] void fail(const std::string& problem) const;

    const std::string mFile;
    std::ifstream mInput;
    std::vector<char> mBuffer;
    std::string mLine;
    std::string mUnquoted;
    int64_t mLineNumber = 0;
    int64_t mLastTimeMs = 0;
    std::vector<Column> mColumns;
    std::vector<std::string> mZoneTypes;
};

}  // namespace sim
