// A fitting cycle with an ambient model, for which the charger is asked by the daemon's own
// threads, against the bare reading of the same nodes. Processor time of all threads, since a call
// is handed to another one.

#include <benchmark/benchmark.h>
#include <binder_linux/LocalServiceManager.h>
#include <unistd.h>
#include <vendor/zenta/hardware/charger/1.0/ICharger.h>

#include <atomic>
#include <cstdio>

#include "BenchPhone.h"
#include "MedianReporter.h"
#include "base/DeviceRoot.h"
#include "core/Connections.h"
#include "shelltemp/ShellTempFitting.h"
#include "sim/process/RootedRun.h"
#include "sim/services/PublishedBinder.h"
#include "sim/tree/PhoneTree.h"

namespace {

using vendor::zenta::hardware::charger::V1_0::ICharger;

constexpr char kFloor[] = "floor: open, read, close";
constexpr char kCycle[] = "fitting cycle, the charger asked";
constexpr double kBudget = 3.0;
constexpr char kAmbientSet[] =
        R"(,"ambient":{"temp_model":{
            "power":{"index":10,"type":1,"thermal_zone":["zone0"],"coefficient":[0,12]},
            "shell":{"index":11,"thermal_zone":["zone1"],"coefficient":[1,0]}},
          "ambient_fitting":{
            "paramter_name":["temp_coeff","tempSlope_coeff","power_coeff","const_coeff"],
            "coefficient":[0.001,0,0,0],"temp_rate_threshold":40,"power_diff_threshold":500}})";

class Charger : public ICharger {
  public:
    android::hardware::Return<int32_t> getBatteryCurrentNow() override { return ++mAsked; }
    android::hardware::Return<void> notifyScreenStatus(int32_t) override { return {}; }
    int32_t asked() const { return mAsked; }

  private:
    std::atomic<int32_t> mAsked = 0;
};

sim::Scenario ambientPhone() {
    sim::Scenario scenario = bench::phone();
    std::string& config = *scenario.config.main;
    config.insert(config.rfind("}}"), kAmbientSet);
    return scenario;
}

template <typename Function>
void measure(const char* name, Function function) {
    benchmark::RegisterBenchmark(name, function)
            ->Unit(benchmark::kMicrosecond)
            ->MeasureProcessCPUTime()
            ->Repetitions(9)
            ->ReportAggregatesOnly();
}

}  // namespace

int main(int argc, char** argv) {
    if (!sim::runsBelowOwnRoot()) {
        return sim::runBelowOwnRoot(argv, [](sim::DeviceTree& tree) {
            tree.setProperty("persist.sys.kelvo.loglevel", "-1");
        });
    }
    const std::string root = kelvo::deviceRoot();
    const sim::Scenario scenario = ambientPhone();
    sim::DeviceTree tree(root);
    sim::PhoneTree(tree, scenario).build();
    android::installLocalServiceManager();
    const android::sp<Charger> charger = new Charger;
    const sim::PublishedHidl published(ICharger::descriptor, charger);
    kelvo::connectEngines();

    benchmark::Initialize(&argc, argv);
    measure(kFloor, [&](benchmark::State& state) {
        const std::vector<std::string> paths = bench::zonePaths(root);
        for (auto _ : state) {
            benchmark::DoNotOptimize(bench::readNodes(paths));
        }
    });
    measure(kCycle, [&](benchmark::State& state) {
        auto& engine = ShellTempFitting::getInstance();
        engine.getAndfitTemp();  // the first round ever only sets the clock
        const int32_t before = charger->asked();
        for (auto _ : state) {
            engine.getAndfitTemp();
        }
        if (charger->asked() - before < static_cast<int32_t>(state.iterations())) {
            state.SkipWithError("the charger was not asked in every cycle");
        }
    });
    bench::MedianReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    const bool keepsBudget = reporter.keepsBudget(kCycle, kFloor, kBudget);
    std::fflush(stdout);
    // Its threads run on: nothing static may be destroyed under them.
    _exit(keepsBudget ? 0 : 1);
}
