#pragma once

#include <benchmark/benchmark.h>

#include <cstdio>
#include <map>
#include <string>

namespace bench {

/** Prints as usual and keeps the median of each benchmark that is repeated. */
class MedianReporter : public benchmark::ConsoleReporter {
  public:
    void ReportRuns(const std::vector<Run>& runs) override {
        ConsoleReporter::ReportRuns(runs);
        for (const Run& run : runs) {
            if (run.aggregate_name == "median") {
                mMedians[run.run_name.function_name + run.run_name.args] = run.GetAdjustedCPUTime();
            }
        }
    }
    /** By name and arguments; µs of CPU, 0 for one that did not run. */
    double median(const std::string& name) { return mMedians[name]; }
    /** Prints how a benchmark stands to its floor; whether it keeps its budget. */
    bool keepsBudget(const std::string& name, const std::string& floor, double budget) {
        const double ratio = median(name) / median(floor);
        std::printf("%s: %.2f x its floor (budget %.1f)\n", name.c_str(), ratio, budget);
        return ratio > 0 && ratio <= budget;
    }

  private:
    std::map<std::string, double> mMedians;
};

}  // namespace bench
