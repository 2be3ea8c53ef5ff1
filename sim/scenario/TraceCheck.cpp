#include "sim/scenario/TraceCheck.h"

#include <algorithm>
#include <cstdlib>
#include <iterator>
#include <string>

namespace sim {

namespace {

constexpr int32_t kHottest = 150;  // °C that a zone shows at most; fewer m°C are hardly meant
constexpr int32_t kLeap = 5000;    // m°C that a zone hardly changes by from row to row

/** A phone in the frost comes by 0 °C, too, but not all of a sudden. */
bool isDoubtful(int32_t temp, const std::optional<int32_t>& last, bool lastIsDoubtful) {
    const bool isSmall = temp != 0 && temp >= -kHottest && temp <= kHottest;
    return isSmall && (!last || lastIsDoubtful || std::llabs(int64_t{temp} - *last) > kLeap);
}

}  // namespace

void TraceValues::see(const TraceRow& row, int64_t line) {
    for (const ZoneChange& change : row.zones) {
        if (!change.temp) {
            continue;
        }
        const auto zone = static_cast<size_t>(change.index);
        mColumns.resize(std::max(mColumns.size(), zone + 1));
        Column& column = mColumns[zone];
        column.lastIsDoubtful = isDoubtful(*change.temp, column.last, column.lastIsDoubtful);
        column.last = change.temp;
        if (column.lastIsDoubtful && ++column.count == 1) {
            column.firstDoubtful = *change.temp;
            column.firstLine = line;
        }
    }
}

std::vector<ScenarioWarning> TraceValues::warnings(const std::string& file,
                                                   const std::vector<std::string>& types) const {
    std::vector<ScenarioWarning> warnings;
    for (size_t zone = 0; zone < mColumns.size(); ++zone) {
        const Column& column = mColumns[zone];
        if (column.count > 0) {
            const std::string value = std::to_string(column.firstDoubtful);
            const std::string more =
                    column.count > 1 ? " (and " + std::to_string(column.count - 1) + " more)" : "";
            warnings.push_back({"the zone \"" + types[zone] + "\" is " + value +
                                        " m°C here, hardly meant: " + value + " °C are " + value +
                                        "000" + more,
                                file + ": line " + std::to_string(column.firstLine)});
        }
    }
    return warnings;
}

int64_t checkTrace(const Scenario& scenario, std::vector<ScenarioWarning>* warnings) {
    if (!scenario.trace) {
        return 0;
    }
    TraceReader reader(*scenario.trace, scenario.zones);
    TraceRow row;
    TraceValues values;
    int64_t rows = 0;
    for (; reader.next(row); ++rows) {
        values.see(row, reader.line());
    }
    if (warnings != nullptr) {
        std::ranges::move(values.warnings(*scenario.trace, reader.zoneTypes()),
                          std::back_inserter(*warnings));
    }
    return rows;
}

}  // namespace sim
