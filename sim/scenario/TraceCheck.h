#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "sim/scenario/ScenarioWarning.h"
#include "sim/scenario/Trace.h"

namespace sim {

/** Watches the rows of a trace for °C where m°C are meant. Not thread-safe. */
class TraceValues {
  public:
    void see(const TraceRow& row, int64_t line);
    /** One for each zone that has such cells; the types are those of the trace's zones. */
    std::vector<ScenarioWarning> warnings(const std::string& file,
                                          const std::vector<std::string>& types) const;

  private:
    struct Column {
        std::optional<int32_t> last;  // m°C
        bool lastIsDoubtful = false;
        int32_t firstDoubtful = 0;
        int64_t firstLine = 0;
        int64_t count = 0;  // of doubtful cells
    };

    std::vector<Column> mColumns;  // by zone, as far as one was seen
};

/**
 * Reads the whole trace of a scenario; returns its rows, 0 without a trace. What is hardly meant in
 * it is appended to `warnings` when that is not null.
 */
int64_t checkTrace(const Scenario& scenario, std::vector<ScenarioWarning>* warnings = nullptr);

}  // namespace sim
