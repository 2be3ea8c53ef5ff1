#include "sim/live/LivePhone.h"

#include <algorithm>
#include <cstdio>

#include "common/Overloaded.h"
#include "sim/framework/FrameworkClient.h"
#include "sim/scenario/PhonePaths.h"

namespace sim {

LivePhone::LivePhone(const Scenario& scenario, const std::string& root, const std::string& programs,
                     const std::vector<std::string>& kelvod,
                     const std::vector<std::string>& framework)
      : mScenario(scenario),
        mTree(root),
        mShellTemp(mTree),
        mPhone(mTree, scenario, [this](bool present) { mShellTemp.setPresent(present); }),
        mLogPath(mTree.hostPath("/data/kelvod.log")) {
    mPhone.build();
    mTree.addFolder("/data");
    mPlayer.emplace(scenario, mPhone);
    mPlayer->feedTree(0);
    mBinder = std::make_unique<BinderPlatform>(programs, root, mTree.hostPath("/data"));
    mServices = std::make_unique<LiveServices>(scenario, mTree, programs);
    feedServices(0);
    mKelvod = std::make_unique<PhoneProcess>(kelvod, root, mLogPath);
    mFramework = std::make_unique<LiveFramework>(scenario, framework, root);
}

void LivePhone::advanceTo(int64_t timeMs) {
    const int64_t playedMs = std::min(timeMs, mScenario.durationMs);
    mPlayer->feedTree(playedMs);
    feedServices(playedMs);
    mShellTemp.takeLines([](std::string_view) {});  // or the daemon would find its pipe full
    while (const Deed* const deed = mPlayer->takeAction(playedMs)) {
        perform(*deed, playedMs);
    }
    mFramework->work(timeMs);
}

void LivePhone::feedServices(int64_t timeMs) {
    mServices->takeEvents(timeMs);
    for (const Deed& deed : mPlayer->takePlantDeeds()) {
        mServices->services().perform(deed);
    }
}

void LivePhone::perform(const Deed& deed, int64_t timeMs) {
    std::visit(common::Overloaded{
                       [this](const SetZones& zones) { mPhone.apply(zones); },
                       [&](const SetNodes& nodes) { mPhone.apply(nodes, timeMs); },
                       [this](const SetProperties& properties) { mPhone.apply(properties); },
                       [this](const ServiceState& state) { mServices->services().perform(state); },
                       [this](const auto& other) {
                           if constexpr (kIsFrameworkDeed<std::decay_t<decltype(other)>>) {
                               mFramework->add(mPlayer->actionsTaken() - 1);
                           } else {
                               mServices->services().perform(Deed(other));
                           }
                       }},
               deed);
}

std::optional<ProcessEnding> LivePhone::ending() {
    if (auto binder = mBinder->ending()) {
        return binder;  // the daemon may have ended because of it
    }
    if (const auto how = mKelvod->ending()) {
        return ProcessEnding{"kelvod", *how, mLogPath};
    }
    return mFramework->ending();
}

std::optional<ZoneSpec> LivePhone::hottestZone() const {
    std::optional<ZoneSpec> hottest;
    for (size_t i = 0; i < mScenario.zones.size(); ++i) {
        const auto text = mTree.node(zonePath(static_cast<int32_t>(i), "temp"));
        int32_t temp = 0;
        const bool known = text && std::sscanf(text->c_str(), "%d", &temp) == 1;
        if (known && (!hottest || temp > hottest->temp)) {
            hottest = ZoneSpec{mScenario.zones[i].type, temp};
        }
    }
    return hottest;
}

}  // namespace sim
