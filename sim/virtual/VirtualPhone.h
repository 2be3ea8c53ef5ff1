#pragma once

#include <functional>
#include <optional>
#include <string>

#include "sim/framework/FrameworkClient.h"
#include "sim/scenario/Event.h"
#include "sim/scenario/Scenario.h"
#include "sim/services/PhoneServices.h"
#include "sim/tree/AtomLog.h"
#include "sim/tree/PhoneTree.h"
#include "sim/tree/PropertyWatch.h"
#include "sim/tree/ScenarioPlayer.h"
#include "sim/tree/ShellTempNode.h"

namespace sim {

/**
 * A simulated phone with the daemon's real engines on it, in one process and in virtual time: the
 * same scenario gives the same events on every run and every machine. The device tree stands below
 * the process's device root. One a process; one thread. Failures throw.
 */
class VirtualPhone {
  public:
    /** `scenario` lives longer than this. Builds the tree; the daemon does not run yet. */
    explicit VirtualPhone(const Scenario& scenario);

    /** Told of each event as it happens; none by default. */
    void setListener(std::function<void(const Event&)> listener) {
        mListener = std::move(listener);
    }

    /**
     * Told at once of every zone, then of each whose value changes, before the daemon can see it:
     * m°C as the phone's sensor shows it, none while it cannot be read.
     */
    void setZoneListener(DeviceTree::ZoneListener listener);
    /**
     * Called when all that was due at a moment has been done; the plant is null without one. Rows
     * of a trace and steps of a plant are moments when there is a zone listener, else what the
     * daemon does.
     */
    void setMomentListener(std::function<void(const Plant*)> listener) {
        mMomentListener = std::move(listener);
    }

    /** Starts the daemon as on a phone. False when its property disables it. */
    bool start();
    /** Runs everything due up to and at `timeMs` after t = 0. Needs start(). */
    void runUntil(int64_t timeMs);
    /**
     * The scenario from start to end, closed by the event "end". `onMinute` is called after each
     * minute of phone time.
     */
    void run(const std::function<void(int64_t timeMs)>& onMinute = [](int64_t) {});

    /** Performs an action now, and what it makes due. */
    void perform(const Deed& deed);
    DeviceTree& tree() { return mTree; }
    /** The truth behind the sensors, as it was in the last whole second; null without a plant. */
    const Plant* plant() const { return mPlayer->plant(); }
    /** Phone time, ms since t = 0. */
    int64_t now() const;

  private:
    int64_t nextTime() const;
    void runMoment(int64_t timeMs);
    void runDaemon(int64_t timeMs);
    void feedServices();
    void apply(const Deed& deed);
    void collectEvents();
    void emit(const Event& event);
    void emitNow(Event event);

    const Scenario& mScenario;
    DeviceTree mTree;
    ShellTempNode mShellTemp;
    PhoneTree mPhone;
    std::optional<PropertyWatch> mProperties;
    std::optional<AtomLog> mAtoms;
    std::optional<ScenarioPlayer> mPlayer;
    std::function<void(const Event&)> mListener = [](const Event&) {};
    std::function<void(const Plant*)> mMomentListener = [](const Plant*) {};
    FrameworkClient mClient;
    PhoneServices mServices;
};

}  // namespace sim
