#include "sim/services/LiveServices.h"

#include <algorithm>

namespace sim {

namespace {

constexpr char kManifestPath[] = "/vendor/etc/vintf/declared";
constexpr char kEventsPath[] = "/data/services.jsonl";

PhoneServices::Launcher launcherOf(const DeviceTree& tree, const std::string& programs) {
    const ServiceProcess::Place place{programs + "/phoneservice", tree.root(),
                                      tree.hostPath("/data")};
    return [place](const ServiceKind& kind, const ServiceContext& context) {
        return std::make_unique<ServiceProcess>(place, kind, context);
    };
}

}  // namespace

LiveServices::LiveServices(const Scenario& scenario, DeviceTree& tree, const std::string& programs)
      : mEvents(tree.hostPath(kEventsPath), std::ios::app),
        mServices(scenario, launcherOf(tree, programs),
                  [this](Event event) { write(std::move(event)); }) {
    declare(tree);
    mServices.start();
}

void LiveServices::declare(DeviceTree& tree) const {
    std::string manifest;
    for (const std::string& instance : mServices.declaredInstances()) {
        manifest += instance + "\n";
    }
    if (!tree.node(kManifestPath)) {  // a scenario may make promises of its own
        tree.setNode(kManifestPath, manifest);
    }
}

void LiveServices::takeEvents(int64_t timeMs) {
    mTimeMs = timeMs;
    mServices.takeEvents();
}

void LiveServices::write(Event event) {
    event.timeMs = mTimeMs;
    mEvents << toJsonLine(event) << std::endl;
}

}  // namespace sim
