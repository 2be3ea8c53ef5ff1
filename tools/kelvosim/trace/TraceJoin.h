#pragma once

#include <cstddef>
#include <iosfwd>
#include <string>
#include <vector>

#include "trace/LabRecord.h"
#include "trace/RecordedTrace.h"

/** What came of one thermocouple in a joined trace. */
struct JoinedColumn {
    std::string name;   // "lab-front"
    size_t values = 0;  // rows that have one
    double least = 0;   // °C, of those
    double most = 0;
};

/**
 * Writes the trace with a column "lab-MODEL" for each thermocouple, moved by `shift` seconds: what
 * it measured at each row's time, null where it measured nothing.
 */
std::vector<JoinedColumn> writeJoined(std::ostream& out, const RecordedTrace& trace,
                                      const LabRecord& record, double shift);

/** What looks wrong with columns of which writeJoined() wrote `rows` rows, a sentence each. */
std::vector<std::string> doubtsAbout(const std::vector<JoinedColumn>& columns, size_t rows);
