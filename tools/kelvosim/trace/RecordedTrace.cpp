#include "RecordedTrace.h"

#include <algorithm>
#include <set>

#include "Failure.h"
#include "common/NearestName.h"
#include "sim/scenario/Trace.h"
#include "trace/CsvReader.h"

namespace {

/** Zones for all columns that are none of a node. */
std::vector<sim::ZoneSpec> zonesOf(const std::vector<std::string>& columns) {
    std::set<std::string> types;
    std::vector<sim::ZoneSpec> zones;
    for (const std::string& column : columns) {
        if (!column.starts_with('/') && types.insert(column).second) {
            zones.push_back({column, std::nullopt});
        }
    }
    return zones;
}

}  // namespace

RecordedTrace readRecordedTrace(const std::string& file) {
    CsvReader lines(file, ',');
    RecordedTrace trace;
    if (lines.next(trace.columns)) {
        trace.columns.erase(trace.columns.begin());
        trace.header = lines.line();
    }
    sim::TraceReader reader(file, zonesOf(trace.columns));
    sim::TraceRow row;
    std::vector<std::string> cells;
    while (reader.next(row) && lines.next(cells)) {
        trace.rows.push_back(lines.line());
        trace.times.push_back(static_cast<double>(row.timeMs) / 1000);
    }
    return trace;
}

Course courseOf(const RecordedTrace& trace, const std::string& file, const std::string& zone) {
    const std::vector<sim::ZoneSpec> zones = zonesOf(trace.columns);
    const auto index = sim::uniqueZone(zones, zone);
    if (!index) {
        throw command_line::Failure("there is no zone \"" + zone + "\"" +
                                            common::suggestion(zone, sim::zoneTypes(zones)),
                                    file);
    }
    sim::TraceReader reader(file, zones);
    sim::TraceRow row;
    Course course;
    while (reader.next(row)) {
        const auto change = std::ranges::find(row.zones, *index, &sim::ZoneChange::index);
        if (change != row.zones.end() && change->temp) {
            course.times.push_back(static_cast<double>(row.timeMs) / 1000);
            course.values.push_back(*change->temp / 1000.0);
        }
    }
    if (course.times.size() < 2) {
        throw command_line::Failure("the zone \"" + zone + "\" has fewer than two readings", file);
    }
    return course;
}
