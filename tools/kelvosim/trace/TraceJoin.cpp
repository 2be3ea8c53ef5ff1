#include "TraceJoin.h"

#include <algorithm>
#include <cstdio>
#include <ostream>

#include "LabCourse.h"

namespace {

// What a phone's shell is between.
constexpr double kLeastShell = -20;  // °C
constexpr double kMostShell = 90;
constexpr size_t kEnoughToMove = 20;  // readings among which one should differ

void note(double temp, JoinedColumn& column) {
    column.least = column.values == 0 ? temp : std::min(column.least, temp);
    column.most = column.values == 0 ? temp : std::max(column.most, temp);
    ++column.values;
}

std::string celsius(double temp) {
    char text[32];
    snprintf(text, sizeof(text), "%.1f \u00b0C", temp);
    return text;
}

}  // namespace

std::vector<JoinedColumn> writeJoined(std::ostream& out, const RecordedTrace& trace,
                                      const LabRecord& record, double shift) {
    std::vector<JoinedColumn> joined;
    std::vector<LabCourse> courses;
    out << trace.header;
    for (const LabColumn& column : record.columns) {
        joined.push_back({"lab-" + column.model});
        courses.emplace_back(record, column, shift);
        out << ',' << joined.back().name;
    }
    out << '\n';
    for (size_t row = 0; row < trace.rows.size(); ++row) {
        out << trace.rows[row];
        for (size_t i = 0; i < joined.size(); ++i) {
            const auto temp = courses[i].at(trace.times[row]);
            out << ',' << (temp ? std::to_string(*temp) : "null");
            if (temp) {
                note(*temp / 1000.0, joined[i]);
            }
        }
        out << '\n';
    }
    return joined;
}

std::vector<std::string> doubtsAbout(const std::vector<JoinedColumn>& columns, size_t rows) {
    std::vector<std::string> doubts;
    for (const JoinedColumn& column : columns) {
        if (column.values * 2 < rows) {
            doubts.push_back(column.name + " has a value in " + std::to_string(column.values) +
                             " of " + std::to_string(rows) + " rows only");
        }
        if (column.values >= kEnoughToMove && column.least == column.most) {
            doubts.push_back(column.name + " stands still at " + celsius(column.least));
        }
        if (column.values > 0 && (column.least < kLeastShell || column.most > kMostShell)) {
            const double worst = column.least < kLeastShell ? column.least : column.most;
            doubts.push_back(column.name + " has " + celsius(worst) + ", which no shell has");
        }
    }
    return doubts;
}
