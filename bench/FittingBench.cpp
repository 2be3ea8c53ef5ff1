// A fitting cycle in a tight loop against the bare reading of the same nodes.

#include <benchmark/benchmark.h>

#include <cstdio>
#include <map>
#include <string>

#include "BenchPhone.h"
#include "config/DeviceRoot.h"
#include "shelltemp/ShellTempFitting.h"
#include "sim/RootedRun.h"
#include "sim/VirtualPhone.h"

namespace {

constexpr double kBudget = 1.5;
constexpr char kFloor[] = "floor: open, read, close";
constexpr char kCycle[] = "fitting cycle, nothing changed";

void readNodes(benchmark::State& state) {
    const std::vector<std::string> paths = bench::zonePaths(kelvo::deviceRoot());
    for (auto _ : state) {
        benchmark::DoNotOptimize(bench::readNodes(paths));
    }
}

void fittingCycle(benchmark::State& state) {
    auto& engine = ShellTempFitting::getInstance();
    for (auto _ : state) {
        if (engine.getAndfitTemp() != 0) {
            state.SkipWithError("a zone could not be read");
        }
        engine.checkShellTemp();
        engine.setShellTemp();
        engine.updateGlobalShellTemp();
    }
}

/** Prints as usual and keeps the median of each benchmark. */
class RatioReporter : public benchmark::ConsoleReporter {
  public:
    void ReportRuns(const std::vector<Run>& runs) override {
        ConsoleReporter::ReportRuns(runs);
        for (const Run& run : runs) {
            if (run.aggregate_name == "median") {
                mMedians[run.run_name.function_name] = run.GetAdjustedCPUTime();
            }
        }
    }
    double ratio() { return mMedians[kCycle] / mMedians[kFloor]; }

  private:
    std::map<std::string, double> mMedians;  // µs of CPU
};

}  // namespace

int main(int argc, char** argv) {
    const sim::Scenario scenario = bench::phone();
    if (!sim::runsBelowOwnRoot()) {
        return sim::runBelowOwnRoot(argv, [&](sim::DeviceTree& tree) {
            tree.setProperty("persist.sys.kelvo.loglevel", "-1");
        });
    }
    sim::VirtualPhone phone(scenario);
    if (!phone.start()) {
        std::fprintf(stderr, "fitting_bench: the daemon does not start\n");
        return 1;
    }
    phone.runUntil(0);
    benchmark::Initialize(&argc, argv);
    using Function = void (*)(benchmark::State&);
    for (const auto& [name, function] :
         {std::pair<const char*, Function>{kFloor, readNodes}, {kCycle, fittingCycle}}) {
        benchmark::RegisterBenchmark(name, function)
                ->Unit(benchmark::kMicrosecond)
                ->Repetitions(9)
                ->ReportAggregatesOnly();
    }
    RatioReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    std::printf("tight cycle: %.2f x its floor (budget %.1f)\n", reporter.ratio(), kBudget);
    return reporter.ratio() <= kBudget ? 0 : 1;
}
