#include "recording/Recorder.h"

#include <algorithm>
#include <cmath>

#include "ambient/AmbientTempWatcher.h"
#include "base/Numeric.h"
#include "common/JsonText.h"
#include "core/KelvoState.h"
#include "recording/ActionText.h"
#include "recording/RunInfo.h"
#include "sim/scenario/PhonePaths.h"
#include "sim/tree/PhoneTree.h"
#include "sim/virtual/VirtualTime.h"
#include "thermalstatus/KelvoThermalStatus.h"

namespace {

constexpr int64_t kSamplingMs = 5000;  // the components' sampling interval
constexpr int32_t kMilli = 1000;
constexpr size_t kMostZones = 1000;

int32_t toMilli(double celsius) {
    return kelvo::saturatingInt32(std::round(celsius * kMilli));
}

std::string memberOf(const sim::Event& event, const std::string& name) {
    for (const auto& [key, value] : event.members) {
        if (key == name && value.isString()) {
            return value.asString();
        }
    }
    return {};
}

std::string membersAsText(const sim::Event& event) {
    std::string text = event.name;
    for (const auto& [name, value] : event.members) {
        text += " " + name + ": " +
                (value.isString() ? value.asString() : common::compactJson(value));
    }
    return text;
}

/** The modem's samples are mW from the usage feed and mA from clients' texts. */
const char* sampleUnit(int32_t component) {
    switch (component) {
        case AMBIENT:
            return "m°C";
        case GPU:
            return "mA";
        case CELLULAR:
            return "mW or mA";
        default:
            return "mW";
    }
}

void addComponents(Recording& recording) {
    for (int32_t type = 0; type < kComponentTypes; ++type) {
        recording.heat.emplace_back(componentName(type), "m°C");
        recording.heatSamples.emplace_back(componentName(type), sampleUnit(type));
    }
}

}  // namespace

Recorder::Recorder(const sim::Scenario& scenario, const std::string& scenarioFile) {
    mRecording.info = runInfo(scenario, scenarioFile);
    for (const sim::ZoneSpec& zone : scenario.zones) {
        mRecording.zones.emplace_back(zone.type, "m°C");
    }
    if (scenario.plant) {
        for (const auto& node : scenario.plant->nodes) {
            mRecording.plantNodes.emplace_back(node.name, "m°C");
        }
    }
    addComponents(mRecording);
    for (const sim::Action& action : scenario.timeline) {
        if (action.timeMs <= scenario.durationMs) {
            mRecording.marks.push_back(
                    {action.timeMs, Mark::Kind::ACTION, actionText(action.deed, scenario)});
        }
    }
}

void Recorder::onZone(int32_t zone, std::optional<int32_t> temp) {
    // A scenario may make more zones, or ones with gaps between, by their nodes' paths.
    const auto place = static_cast<size_t>(zone);
    while (place < kMostZones && mRecording.zones.size() <= place) {
        mRecording.zones.emplace_back("zone " + std::to_string(mRecording.zones.size()), "m°C");
    }
    if (zone >= 0 && place < kMostZones) {
        mRecording.zones[place].add(sim::VirtualTime::now(), temp);
    }
}

void Recorder::onEvent(const sim::Event& event) {
    if (event.name.starts_with("notify_")) {
        addNotification(event);
    } else if (event.name == "property") {
        addMark(Mark::Kind::PROPERTY, memberOf(event, "name") + " = " + memberOf(event, "value"));
    } else if (event.name == "write" && memberOf(event, "path") == sim::kShellTempPath) {
        // The passes tell of these.
    } else if (event.name != "atom" && event.name != "end") {
        addMark(Mark::Kind::CALL, membersAsText(event));
    }
}

void Recorder::addNotification(const sim::Event& event) {
    Notification notification{event.timeMs, memberOf(event, "listener"), event.name, {}};
    for (const auto& member : event.members) {
        if (member.first != "listener") {
            notification.values.push_back(member);
        }
    }
    mRecording.notifications.push_back(std::move(notification));
}

// Actions are known from the start; of one time they stay before what came of them.
void Recorder::addMark(Mark::Kind kind, const std::string& text) {
    const int64_t now = sim::VirtualTime::now();
    const auto place =
            std::upper_bound(mRecording.marks.begin(), mRecording.marks.end(), now,
                             [](int64_t time, const Mark& mark) { return time < mark.timeMs; });
    mRecording.marks.insert(place, {now, kind, oneLine(text)});
}

void Recorder::onFittingPass(const kelvo::FittingPass& pass) {
    const int64_t now = sim::VirtualTime::now();
    mRecording.passes.add(now, pass);
    mRecording.scene.add(now, pass.scene);
    for (const kelvo::ModelEvaluation& model : pass.models) {
        mRecording.models.try_emplace(model.name, model.name, "m°C")
                .first->second.add(now, model.fitted);
    }
    if (pass.failedZone) {
        addMark(Mark::Kind::FAILURE, "zone " + std::to_string(*pass.failedZone) + " of " +
                                             pass.failedModel + " could not be read");
    }
}

void Recorder::onLevelDecision(const kelvo::LevelDecision& decision) {
    const int64_t now = sim::VirtualTime::now();
    mRecording.decisions.push_back({now, decision});
    mRecording.level.add(now, decision.newLevel);
}

void Recorder::onHeatSample(const kelvo::HeatSample& sample) {
    const int64_t now = sim::VirtualTime::now();
    mRecording.monitoring.add(now, "on");
    mRecording.heatSamples.at(static_cast<size_t>(sample.component)).add(now, sample.value);
    mLastSamples[sample.component] = sample;
    mLastSampleMs = now;
}

void Recorder::onHeatRanking(const kelvo::HeatRanking& ranking) {
    const int64_t now = sim::VirtualTime::now();
    mRecording.rankings.push_back({now, {ranking, mLastSamples}});
    const char* const main = componentName(ranking.mainComponent);
    mRecording.heatSource.add(now, main != nullptr ? main : "");
    for (const auto& contribution : ranking.contributions) {
        mRecording.heat.at(static_cast<size_t>(contribution.component)).add(now, contribution.heat);
    }
}

void Recorder::onMomentEnd(const sim::Plant* plant) {
    if (!mLastSamples.empty() && sim::VirtualTime::now() > mLastSampleMs + kSamplingMs) {
        endMonitoring();
    }
    lookAtDaemon();
    if (plant != nullptr) {
        lookAtPlant(*plant);
    }
}

void Recorder::endMonitoring() {
    const int64_t now = sim::VirtualTime::now();
    mRecording.monitoring.add(now, "");
    mRecording.heatSource.add(now, "");
    for (auto* list : {&mRecording.heat, &mRecording.heatSamples}) {
        for (Series& series : *list) {
            series.add(now, std::nullopt);
        }
    }
    mLastSamples.clear();
}

// Only what is there: to make an engine earlier than the daemon would changes the run.
void Recorder::lookAtDaemon() {
    const int64_t now = sim::VirtualTime::now();
    if (KelvoState::hasInstance()) {
        const int32_t shell = KelvoState::getInstance().getTemp();
        mRecording.shell.add(now, shell == 0 ? std::nullopt : std::optional(shell));
    }
    if (KelvoThermalStatus::hasInstance()) {
        const int32_t status = KelvoThermalStatus::getInstance().getThermalStatus();
        mRecording.status.add(now, status < 0 ? std::nullopt : std::optional(status));
    }
    using kelvo::AmbientTempWatcher;
    if (AmbientTempWatcher::hasInstance()) {
        const int32_t air = AmbientTempWatcher::getInstance().getAmbientTemp();
        mRecording.ambient.add(now, air == AmbientTempWatcher::kNoEstimate
                                            ? std::nullopt
                                            : std::optional(toMilli(air)));
    }
}

void Recorder::lookAtPlant(const sim::Plant& plant) {
    const int64_t now = sim::VirtualTime::now();
    mRecording.trueAmbient.add(now, toMilli(plant.ambient()));
    for (size_t node = 0; node < mRecording.plantNodes.size(); ++node) {
        mRecording.plantNodes[node].add(now, toMilli(plant.nodeTemp(node)));
    }
}
