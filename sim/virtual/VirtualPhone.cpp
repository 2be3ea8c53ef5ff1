#include "sim/virtual/VirtualPhone.h"

#include <binder_linux/LocalServiceManager.h>
#include <poll.h>
#include <stdlib.h>
#include <time.h>

#include <algorithm>
#include <array>

#include "base/DeviceRoot.h"
#include "common/Overloaded.h"
#include "core/Connections.h"
#include "core/KelvoMain.h"
#include "sim/scenario/PhonePaths.h"
#include "sim/virtual/VirtualScheduler.h"
#include "sim/virtual/VirtualTime.h"

namespace sim {

namespace {

constexpr int64_t kMinuteMs = 60000;

}  // namespace

VirtualPhone::VirtualPhone(const Scenario& scenario)
      : mScenario(scenario),
        mTree(kelvo::deviceRoot()),
        mShellTemp(mTree),
        mPhone(mTree, scenario, [this](bool present) { mShellTemp.setPresent(present); }),
        mClient([this](Event event) { emitNow(std::move(event)); }),
        mServices(scenario, PhoneServices::launchHere,
                  [this](Event event) { emitNow(std::move(event)); }) {
    kelvo::connectEngines();
    const auto manager = android::installLocalServiceManager();
    for (const std::string& instance : mServices.declaredInstances()) {
        if (!isHidlInstance(instance)) {  // nobody else could bring what this thread waits for
            manager->declareService(android::String16(instance.c_str()));
        }
    }
    mServices.start();
    // Local time in replay is UTC.
    setenv("TZ", "UTC", 1);
    tzset();
    VirtualTime::start(scenario.uptimeMs, scenario.startNs);
    mPhone.build();
    mProperties.emplace(mTree);
    mAtoms.emplace(mTree);
    mPlayer.emplace(scenario, mPhone);
    mPlayer->setStepwise(false);
    feedServices();
    VirtualScheduler::get().setObserver([this] { collectEvents(); });
}

void VirtualPhone::setZoneListener(DeviceTree::ZoneListener listener) {
    mPlayer->setStepwise(true);
    mTree.setZoneListener(std::move(listener));
}

bool VirtualPhone::start() {
    if (!kelvo::isKelvoEnabled() || kelvo::kelvo_start(nullptr) != 0) {
        return false;
    }
    collectEvents();
    return true;
}

void VirtualPhone::run(const std::function<void(int64_t timeMs)>& onMinute) {
    if (start()) {
        for (int64_t timeMs = kMinuteMs; timeMs < mScenario.durationMs; timeMs += kMinuteMs) {
            runUntil(timeMs);
            onMinute(timeMs);
        }
        runUntil(mScenario.durationMs);
    }
    VirtualTime::advanceTo(mScenario.durationMs);
    emit({now(), "end", {}});
}

void VirtualPhone::runUntil(int64_t timeMs) {
    for (int64_t next = nextTime(); next <= timeMs; next = nextTime()) {
        runMoment(next);
    }
    VirtualTime::advanceTo(timeMs);
    mPlayer->feedTree(timeMs);
}

int64_t VirtualPhone::now() const {
    return VirtualTime::now();
}

int64_t VirtualPhone::nextTime() const {
    const int64_t next = std::min(VirtualScheduler::get().nextTime(), mPlayer->nextTime());
    return std::max(next, now());
}

void VirtualPhone::runMoment(int64_t timeMs) {
    VirtualTime::advanceTo(timeMs);
    mPlayer->feedTree(timeMs);
    if (std::min(VirtualScheduler::get().nextTime(), mPlayer->nextActionTime()) <= timeMs) {
        runDaemon(timeMs);
    }
    mMomentListener(mPlayer->plant());
}

void VirtualPhone::runDaemon(int64_t timeMs) {
    feedServices();
    while (const Deed* const deed = mPlayer->takeAction(timeMs)) {
        apply(*deed);
    }
    VirtualScheduler::get().handleMessages();
    VirtualScheduler::get().runLoops();
}

void VirtualPhone::feedServices() {
    for (const Deed& deed : mPlayer->takePlantDeeds()) {
        mServices.perform(deed);
    }
}

void VirtualPhone::perform(const Deed& deed) {
    apply(deed);
    VirtualScheduler::get().runLoops();
}

void VirtualPhone::apply(const Deed& deed) {
    std::visit(
            common::Overloaded{[this](const SetZones& zones) { mPhone.apply(zones); },
                               [this](const SetNodes& nodes) { mPhone.apply(nodes, now()); },
                               [this](const SetProperties& properties) {
                                   mPhone.apply(properties);
                                   mProperties->dropChanges();
                               },
                               [this](const ServiceState& state) { mServices.perform(state); },
                               [this](const auto& other) {
                                   if constexpr (kIsFrameworkDeed<std::decay_t<decltype(other)>>) {
                                       mClient.perform(other);
                                   } else {
                                       mServices.perform(Deed(other));
                                   }
                               }},
            deed);
    collectEvents();
    VirtualScheduler::get().handleMessages();
}

void VirtualPhone::collectEvents() {
    std::array<pollfd, 3> sources{{{mShellTemp.fd(), POLLIN, 0},
                                   {mProperties->fd(), POLLIN, 0},
                                   {mAtoms->fd(), POLLIN, 0}}};
    if (poll(sources.data(), sources.size(), 0) <= 0) {
        return;  // as nearly always, and cheaper than to ask each
    }
    if (sources[0].revents != 0) {
        mShellTemp.takeLines([this](std::string_view line) {
            emit({now(),
                  "write",
                  {{"path", std::string(kShellTempPath)}, {"text", std::string(line)}}});
        });
    }
    if (sources[1].revents != 0) {
        mProperties->takeChanges([this](const std::string& name, const std::string& value) {
            emit({now(), "property", {{"name", name}, {"value", value}}});
        });
    }
    if (sources[2].revents != 0) {
        mAtoms->takeRecords([this](int32_t id, const std::string& text, int32_t value) {
            emit({now(), "atom", {{"id", id}, {"text", text}, {"value", value}}});
        });
    }
}

void VirtualPhone::emit(const Event& event) {
    mListener(event);
}

void VirtualPhone::emitNow(Event event) {
    event.timeMs = now();
    emit(event);
}

}  // namespace sim
