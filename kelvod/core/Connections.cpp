// The roof: what stands behind the calls that lower folders make upward. Each finds its engine when
// it is called and not before, because the order in which engines come to be shows.

#include "core/Connections.h"

#include <atomic>

#include "ambient/AmbientTempWatcher.h"
#include "base/UpCall.h"
#include "config/CpuPowerRecords.h"
#include "core/DataCollector.h"
#include "core/EngineMessages.h"
#include "core/StateCalls.h"
#include "links/ChargerProxyService.h"
#include "shelltemp/AmbientRounds.h"
#include "shelltemp/ShellTempFitting.h"
#include "thermalstatus/KelvoThermalStatus.h"

namespace kelvo {

namespace {

class PowerToBigData : public CpuPowerRecords {
    void onOperatingPoints(const std::string& cluster, const Json::Value& points) override {
        DataCollector::getInstance().setData(DC_THERMAL, cluster, points);
    }
    void onStaticPower(const std::string& text) override {
        DataCollector::getInstance().setData(DC_THERMAL, "d_static_power", "static_power", text);
    }
};

class StateToEngines : public StateCalls {
    int32_t thermalStatus() override {
        return KelvoThermalStatus::getInstance().getThermalStatus();
    }
    int32_t batteryCurrentNow() override {
        return ChargerProxyService::getInstance().getBatteryCurrentNow();
    }
    void enterScene(const std::string& text) override {
        ShellTempFitting::getInstance().updateScene(text, false, 0);
    }
};

class FittingToAmbient : public AmbientRounds {
    void prepare() override { mWatcher = &AmbientTempWatcher::getInstance(); }
    bool checkAvailableStats() override { return mWatcher.load()->checkAvailableStats(); }
    void updateAmbientTemp(int32_t temp, int32_t power) override {
        mWatcher.load()->updateAmbientTemp(temp, power);
    }
    void switchFittingParameter(const std::string& scene) override {
        mWatcher.load()->switchFittingParameter(scene);
    }

    // The others are called under the fitting engine's main mutex. The lock of the singleton must
    // not be taken there: under it the watcher asks the fitting engine, when it is made.
    std::atomic<AmbientTempWatcher*> mWatcher = nullptr;
};

/** Connects a performer that lives as long as the process, whatever static objects do at its end.
 */
template <typename Interface, typename Performer>
void connect() {
    static Performer& performer = *new Performer();
    UpCall<Interface>::connect(performer);
}

}  // namespace

void connectEngines() {
    connect<CpuPowerRecords, PowerToBigData>();
    connect<MessageActions, EngineMessages>();
    connect<StateCalls, StateToEngines>();
    connect<AmbientRounds, FittingToAmbient>();
}

}  // namespace kelvo
