// Traces: whatever the text is, it is refused with a place, or its rows go forward in time.

#include <fstream>
#include <limits>
#include <string>

#include "Target.h"
#include "sim/scenario/Trace.h"

#include "base/DeviceRoot.h"

namespace {

void readRows(const std::string& file) {
    sim::TraceReader reader(file, {{"skin", 30000}, {"cpu", 30000}, {"cpu", 30000}});
    sim::TraceRow row;
    int64_t last = std::numeric_limits<int64_t>::min();
    while (reader.next(row)) {
        require(row.timeMs >= last, "time does not go back");
        last = row.timeMs;
    }
}

}  // namespace

void fuzzTrace(Bytes data) {
    const std::string file = kelvo::deviceRoot() + "/trace.csv";
    std::ofstream(file, std::ios::binary) << textOf(data);
    try {
        readRows(file);
    } catch (const sim::ScenarioError&) {
        // refused
    }
}
