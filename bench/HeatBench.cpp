// What the heat monitor costs: a sampling pass, a report, and the ranking of threads.

#include <benchmark/benchmark.h>

#include <array>
#include <chrono>
#include <cstdio>
#include <string>
#include <vector>

#include "BenchPhone.h"
#include "MedianReporter.h"
#include "base/DeviceRoot.h"
#include "heat/AmbientCompHeat.h"
#include "heat/CellularCompHeat.h"
#include "heat/CpuCompHeat.h"
#include "heat/DisplayCompHeat.h"
#include "heat/GpuCompHeat.h"
#include "heat/HeatProcessCenter.h"
#include "heat/WifiCompHeat.h"
#include "sim/process/RootedRun.h"
#include "sim/virtual/VirtualPhone.h"

namespace {

constexpr int kPassSeconds = 5;
constexpr int kPassesToConvert = 5;
constexpr int kFewThreads = 64;
constexpr int kManyThreads = 4096;
// Of the time a thread takes among many to the time it takes among few: caches and the depth of
// ordered maps cost something, a squared cost would make it 64.
constexpr double kLinearBudget = 4;

constexpr char kFloor[] = "floor: open, read, close the nodes";
constexpr char kPass[] = "sampling pass, six components";
constexpr char kReport[] = "report of five passes";
constexpr char kRanking[] = "ranking of threads";

sim::VirtualPhone* sPhone = nullptr;
double sTime = 0;  // s

void readNodes(benchmark::State& state) {
    const std::vector<std::string> paths = bench::heatNodePaths(kelvo::deviceRoot());
    for (auto _ : state) {
        benchmark::DoNotOptimize(bench::readNodes(paths));
    }
}

void samplingPass(benchmark::State& state) {
    static const std::array<ComponentHeat*, kComponentTypes> kComponents = {
            new CpuCompHeat,
            new DisplayCompHeat,
            &CellularCompHeat::getInstance(),
            &WifiCompHeat::getInstance(),
            new GpuCompHeat,
            new AmbientCompHeat};
    for (auto _ : state) {
        for (ComponentHeat* component : kComponents) {
            component->processRawSample();
        }
    }
}

// Timed by hand: what is measured is the report, not the passes that it needs.
void report(benchmark::State& state) {
    using Clock = std::chrono::steady_clock;
    for (auto _ : state) {
        sTime += kPassesToConvert * kPassSeconds;
        sPhone->runUntil(static_cast<int64_t>(sTime * 1000));
        const auto start = Clock::now();
        if (HeatProcessCenter::getInstance()->getCompentsHeatDetailInfo().empty()) {
            state.SkipWithError("no report");
        }
        state.SetIterationTime(std::chrono::duration<double>(Clock::now() - start).count());
    }
}

void rankThreads(benchmark::State& state) {
    std::vector<kelvo::PidTidPower> reading(static_cast<size_t>(state.range(0)));
    for (size_t i = 0; i < reading.size(); ++i) {
        reading[i].pid = static_cast<int32_t>(i / 8);
        reading[i].tid = static_cast<int32_t>(i);
        reading[i].power = static_cast<int32_t>((i * 7919) % 10007);
    }
    kelvo::TopThreads threads;
    for (auto _ : state) {
        threads.add(reading);
        threads.getTopKeepPowerTid(0, 0.2F);
    }
}

/** Time a thread takes among many over that among few. */
double growth(bench::MedianReporter& reporter) {
    return reporter.median(kRanking + std::to_string(kManyThreads)) / kManyThreads /
           (reporter.median(kRanking + std::to_string(kFewThreads)) / kFewThreads);
}

benchmark::internal::Benchmark* add(const char* name, void (*function)(benchmark::State&)) {
    return benchmark::RegisterBenchmark(name, function)
            ->Unit(benchmark::kMicrosecond)
            ->Repetitions(9)
            ->ReportAggregatesOnly();
}

}  // namespace

int main(int argc, char** argv) {
    const sim::Scenario scenario = bench::heatedPhone();
    if (!sim::runsBelowOwnRoot()) {
        return sim::runBelowOwnRoot(argv, [&](sim::DeviceTree& tree) {
            tree.setProperty("persist.sys.kelvo.loglevel", "-1");
        });
    }
    sim::VirtualPhone phone(scenario);
    sPhone = &phone;
    if (!phone.start()) {
        std::fprintf(stderr, "heat_bench: the daemon does not start\n");
        return 1;
    }
    phone.perform(sim::TaskStats{bench::taskStatistics(200)});
    HeatProcessCenter::getInstance()->startMonitor();
    benchmark::Initialize(&argc, argv);
    add(kFloor, readNodes);
    add(kPass, samplingPass);
    add(kReport, report)->UseManualTime();
    add(kRanking, rankThreads)->Arg(kFewThreads)->Arg(512)->Arg(kManyThreads);
    bench::MedianReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    std::printf("sampling pass: %.2f x its floor\n",
                reporter.median(kPass) / reporter.median(kFloor));
    std::printf("time of a thread among %d over that among %d: %.2f (budget %.1f)\n", kManyThreads,
                kFewThreads, growth(reporter), kLinearBudget);
    return growth(reporter) <= kLinearBudget ? 0 : 1;
}
