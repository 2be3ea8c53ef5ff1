#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "sim/live/LiveFramework.h"
#include "sim/process/BinderPlatform.h"
#include "sim/process/PhoneProcess.h"
#include "sim/scenario/Scenario.h"
#include "sim/services/LiveServices.h"
#include "sim/tree/PhoneTree.h"
#include "sim/tree/ScenarioPlayer.h"
#include "sim/tree/ShellTempNode.h"

namespace sim {

/**
 * A simulated phone in real time: the daemon and what it talks through are processes of their own.
 * The scenario's clock can run faster than real time; the daemon's own cadence does not. Not
 * thread-safe. Failures throw.
 */
class LivePhone {
  public:
    /**
     * Builds the tree below `root`, starts what carries binder calls (found in the folder
     * `programs`) and then `kelvod`. `framework` is the command of LiveFramework. `scenario` lives
     * longer than this.
     */
    LivePhone(const Scenario& scenario, const std::string& root, const std::string& programs,
              const std::vector<std::string>& kelvod, const std::vector<std::string>& framework);

    /** Brings the phone to this time of the scenario (ms); after its end the zones stand still. */
    void advanceTo(int64_t timeMs);
    /** Whether all actions that were due are done. */
    bool isIdle() const { return mFramework->isIdle(); }
    /** Whether the framework waits for an answer for this long. */
    bool isHeldUp(std::chrono::milliseconds limit) const { return mFramework->isHeldUp(limit); }
    /** The hottest zone as it stands in the tree; none when no zone can be read. */
    std::optional<ZoneSpec> hottestZone() const;
    /** Which of the phone's processes has ended, and how; none while all run. */
    std::optional<ProcessEnding> ending();

  private:
    void perform(const Deed& deed, int64_t timeMs);
    void feedServices(int64_t timeMs);

    const Scenario& mScenario;
    DeviceTree mTree;
    ShellTempNode mShellTemp;
    PhoneTree mPhone;
    std::optional<ScenarioPlayer> mPlayer;
    const std::string mLogPath;
    std::unique_ptr<BinderPlatform> mBinder;  // outlives the daemon
    std::unique_ptr<LiveServices> mServices;
    std::unique_ptr<PhoneProcess> mKelvod;
    std::unique_ptr<LiveFramework> mFramework;
};

}  // namespace sim
