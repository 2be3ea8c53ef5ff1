#include "Target.h"

#include <android/log.h>

#include <algorithm>
#include <array>

#include "sim/process/RootedRun.h"

namespace {

constexpr std::array kTargets{
        Target{"clients", fuzzClients},
        Target{"config", fuzzConfig},
        Target{"hub", fuzzHub},
        Target{"lint", fuzzLint},
        Target{"load", fuzzLoad},
        Target{"models", fuzzModels},
        Target{"nesting", fuzzNesting},
        Target{"nodes", fuzzNodes},
        Target{"nodes_mtk", fuzzNodesMtk},
        Target{"parcel", fuzzParcel},
        Target{"peers", fuzzPeers},
        Target{"properties", fuzzProperties},
        Target{"radio", fuzzRadio},
        Target{"scenario", fuzzScenario},
        Target{"service", fuzzService},
        Target{"task_stats", fuzzTaskStats},
        Target{"trace", fuzzTrace},
        Target{"usage", fuzzUsage},
};

}  // namespace

std::span<const Target> allTargets() {
    return kTargets;
}

const Target* findTarget(std::string_view name) {
    const auto* const found = std::ranges::find(kTargets, name, &Target::name);
    return found == kTargets.end() ? nullptr : found;
}

void moveBelowOwnRoot(char** argv) {
    if (!sim::runsBelowOwnRoot()) {
        std::exit(sim::runBelowOwnRoot(argv, [](sim::DeviceTree& tree) {
            tree.setProperty("persist.sys.kelvo.loglevel", "2");
        }));
    }
    // Every line is made, because making it can fail, and none is printed.
    __android_log_set_logger([](const __android_logger_data*, const char*) {});
}
