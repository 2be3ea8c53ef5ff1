#pragma once

#include <string>
#include <vector>

#include "trace/TimeShift.h"

/** A trace as it was recorded, its lines as they stand. */
struct RecordedTrace {
    std::vector<std::string> columns;  // without "t"
    std::string header;
    std::vector<std::string> rows;
    std::vector<double> times;  // s, of each row
};

/** Reads a trace by the simulator's rules; throws sim::ScenarioError with the line otherwise. */
RecordedTrace readRecordedTrace(const std::string& file);

/** What a zone of it measured, °C; throws when there is no such column, or nothing in it. */
Course courseOf(const RecordedTrace& trace, const std::string& file, const std::string& zone);
