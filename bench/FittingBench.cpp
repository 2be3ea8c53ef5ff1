// A fitting cycle in a tight loop against the bare reading of the same nodes: one that changes
// nothing, and one whose result changes the level of which a listener is told.

#include <benchmark/benchmark.h>

#include <binder/Binder.h>
#include <binder/Parcel.h>

#include <cstdio>
#include <string>

#include "BenchPhone.h"
#include "MedianReporter.h"
#include "base/DeviceRoot.h"
#include "service/BinderManager.h"
#include "shelltemp/ShellTempFitting.h"
#include "sim/process/RootedRun.h"
#include "sim/virtual/VirtualPhone.h"
#include "sim/virtual/VirtualScheduler.h"

namespace {

constexpr char kFloor[] = "floor: open, read, close";
constexpr char kCycle[] = "fitting cycle, nothing changed";
constexpr double kCycleBudget = 1.5;
constexpr char kChange[] = "fitting cycle, level changed, one listener told";
constexpr double kChangeBudget = 2.5;

void readNodes(benchmark::State& state) {
    const std::vector<std::string> paths = bench::zonePaths(kelvo::deviceRoot());
    for (auto _ : state) {
        benchmark::DoNotOptimize(bench::readNodes(paths));
    }
}

bool runCycle() {
    auto& engine = ShellTempFitting::getInstance();
    const bool good = engine.getAndfitTemp() == 0;
    engine.checkShellTemp();
    engine.setShellTemp();
    engine.updateGlobalShellTemp();
    return good;
}

void fittingCycle(benchmark::State& state) {
    for (auto _ : state) {
        if (!runCycle()) {
            state.SkipWithError("a zone could not be read");
        }
    }
}

class Listener : public android::BBinder {
  public:
    int64_t calls() const { return mCalls; }

  private:
    android::status_t onTransact(uint32_t, const android::Parcel&, android::Parcel* reply,
                                 uint32_t) override {
        ++mCalls;
        return reply->writeInt32(0);  // no exception
    }

    int64_t mCalls = 0;
};

sim::VirtualPhone* sPhone = nullptr;
const android::sp<Listener> sListener = new Listener;

// Temperatures of a zone (m°C) that make its model the hottest one, by which the shell temperature
// is on one side of a whole degree or on the other: 36.9 and 37.1 °C.
constexpr int32_t kBelow = 44500;
constexpr int32_t kAbove = 45500;

void setZone(int32_t temp) {
    // Takes along what the cycle before wrote, so that nobody waits for a reader.
    sPhone->perform(sim::SetZones{{{0, temp}}});
}

void changedCycle(benchmark::State& state) {
    constexpr int kSettlingCycles = 20;  // the first step is one that gets smoothed
    setZone(kBelow);
    for (int i = 0; i < kSettlingCycles; ++i) {
        runCycle();
    }
    sim::VirtualScheduler::get().handleMessages();
    bool above = false;
    int64_t told = 0;
    for (auto _ : state) {
        state.PauseTiming();
        above = !above;
        setZone(above ? kAbove : kBelow);
        const int64_t calls = sListener->calls();
        state.ResumeTiming();
        if (!runCycle()) {
            state.SkipWithError("a zone could not be read");
        }
        sim::VirtualScheduler::get().handleMessages();
        told += sListener->calls() > calls ? 1 : 0;
    }
    if (told < static_cast<int64_t>(state.iterations())) {
        state.SkipWithError("the listener was not told of every change");
    }
}

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
    sPhone = &phone;
    // What the phone would make of the daemon's writes is not the daemon's cost.
    sim::VirtualScheduler::get().setObserver([] {});
    kelvo::BinderManager::getInstance().registerClient(0, sListener);
    benchmark::Initialize(&argc, argv);
    using Function = void (*)(benchmark::State&);
    for (const auto& [name, function] : {std::pair<const char*, Function>{kFloor, readNodes},
                                         {kCycle, fittingCycle},
                                         {kChange, changedCycle}}) {
        benchmark::RegisterBenchmark(name, function)
                ->Unit(benchmark::kMicrosecond)
                ->Repetitions(9)
                ->ReportAggregatesOnly();
    }
    bench::MedianReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    const bool cycle = reporter.keepsBudget(kCycle, kFloor, kCycleBudget);
    const bool change = reporter.keepsBudget(kChange, kFloor, kChangeBudget);
    return cycle && change ? 0 : 1;
}
