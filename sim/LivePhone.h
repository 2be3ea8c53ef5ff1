#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "sim/KelvodProcess.h"
#include "sim/PhoneTree.h"
#include "sim/Scenario.h"
#include "sim/ScenarioPlayer.h"
#include "sim/ShellTempNode.h"

namespace sim {

/**
 * A simulated phone in real time with the daemon as a process of its own. The scenario's clock can
 * run faster than real time; the daemon's own cadence does not. Not thread-safe. Failures throw.
 */
class LivePhone {
  public:
    /** Builds the tree below `root` and starts `kelvod`; `scenario` lives longer than this. */
    LivePhone(const Scenario& scenario, const std::string& root,
              const std::vector<std::string>& kelvod);

    /** Brings the phone to this time of the scenario (ms). */
    void advanceTo(int64_t timeMs);
    /** Readable when the daemon wrote; -1 while "/proc/shell-temp" is absent. */
    int writesFd() const { return mShellTemp.fd(); }
    /** Takes what the daemon wrote: model index → latest value (m°C) since start. */
    const std::map<int32_t, int32_t>& shellTemps();
    /** The hottest zone as it stands in the tree; none when no zone can be read. */
    std::optional<ZoneSpec> hottestZone() const;
    /** How the daemon ended; none while it runs. */
    std::optional<std::string> kelvodEnding() { return mKelvod->ending(); }
    /** Host path of the daemon's log. */
    const std::string& logPath() const { return mLogPath; }

    /** Whether this action can be performed live. */
    static bool canPerform(const Deed& deed);

  private:
    void perform(const Deed& deed, int64_t timeMs);

    const Scenario& mScenario;
    DeviceTree mTree;
    ShellTempNode mShellTemp;
    PhoneTree mPhone;
    std::optional<ScenarioPlayer> mPlayer;
    const std::string mLogPath;
    std::map<int32_t, int32_t> mShellTemps;
    std::unique_ptr<KelvodProcess> mKelvod;
};

}  // namespace sim
