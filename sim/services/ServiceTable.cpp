#include "sim/services/ServiceTable.h"

#include <algorithm>
#include <stdexcept>
#include <vector>

#include "sim/services/AidlHealthService.h"
#include "sim/services/ChargerService.h"
#include "sim/services/FramesService.h"
#include "sim/services/HidlHealthService.h"
#include "sim/services/PanelService.h"
#include "sim/services/PerformanceService.h"
#include "sim/services/QuorixService.h"

namespace sim {

namespace {

template <typename... T>
bool isOneOf(const Deed& deed) {
    return (std::holds_alternative<T>(deed) || ...);
}

template <typename Service>
std::unique_ptr<PhoneService> make(const ServiceContext& context) {
    return std::make_unique<Service>(context);
}

constexpr char kHidlHealth[] = "health-hidl";

/** All kinds; "health-hidl" is what the scenario's "health" is on a phone with the older HAL. */
const std::vector<ServiceKind>& serviceKinds() {
    static const std::vector<ServiceKind> kKinds = {
            {"health", AidlHealthService::kInstance, isOneOf<Health>, make<AidlHealthService>},
            {kHidlHealth, HidlHealthService::kInstance, isOneOf<Health>, make<HidlHealthService>},
            {"performance", PerformanceService::kInstance, isOneOf<TaskStats>,
             make<PerformanceService>},
            {"charger", nullptr, isOneOf<BatteryCurrent>, make<ChargerService>},
            {"panel", nullptr, isOneOf<Panel>, make<PanelService>},
            {"frames", nullptr, isOneOf<Frames>, make<FramesService>},
            {"quorix", nullptr, isOneOf<Usage, UsageBytes>, make<QuorixService>},
    };
    return kKinds;
}

}  // namespace

const ServiceKind& serviceKind(const std::string& name) {
    const auto found = std::ranges::find(serviceKinds(), name, &ServiceKind::name);
    if (found == serviceKinds().end()) {
        throw std::invalid_argument("no such service: " + name);
    }
    return *found;
}

const ServiceKind* kindOn(const Scenario& scenario, const std::string& name) {
    const std::string kind =
            name == "health" && scenario.healthHal == HealthHal::Hidl ? kHidlHealth : name;
    const auto found = std::ranges::find(serviceKinds(), kind, &ServiceKind::name);
    return found != serviceKinds().end() ? &*found : nullptr;
}

}  // namespace sim
