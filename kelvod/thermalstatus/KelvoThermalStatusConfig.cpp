// Reading "shell_temp_broadcast" and "thermal_status_model".

#include "base/JoinValues.h"
#include "base/Log.h"
#include "config/ConfigNames.h"
#include "config/KelvoConfig.h"
#include "thermalstatus/KelvoThermalStatus.h"

using kelvo::ThermalModelReading;
namespace key = kelvo::key;

namespace {

/** Takes a list over; when it cannot be used, says where it falls, and that it is `wrong`. */
int takeList(const kelvo::ThermalList& list, const char* wrong, std::vector<int>& out) {
    if (!list.isArray) {
        return -1;
    }
    if (list.falling) {
        KLOGE("config[i-1] i=%d, value=%d", static_cast<int>(*list.falling),
              list.values[*list.falling - 1]);
    }
    if (!list.isUsable()) {
        KLOGE("%s", wrong);
        out.clear();
        return -1;
    }
    out = list.values;
    return 0;
}

/** A number and a value a line, in the words of the list's own format. */
template <typename Print>
void printEntries(const std::vector<int>& list, Print print) {
    for (size_t i = 0; i < list.size(); ++i) {
        print(static_cast<int>(i), list[i]);
    }
}

}  // namespace

// One key for two readers: as an array it holds the central state's throttling thresholds.
void KelvoThermalStatus::initBroadcast() {
    Json::Value section;
    kelvo::KelvoConfig::getInstance().getConfig(&section, {key::kShellTempBroadcast});
    const kelvo::BroadcastConfig config = kelvo::readBroadcastConfig(section);
    mBroadcastEnabled = config.enabled;
    mBroadcastBand = config.band;
    if (config.enabled && config.hasBand) {
        KLOGE("KelvoThermalStatus %d,%d", mBroadcastBand.low, mBroadcastBand.high);
    }
}

int KelvoThermalStatus::initConfig() {
    android::Mutex::Autolock lock(mMutex);
    Json::Value model;
    if (kelvo::KelvoConfig::getInstance().getConfig(&model, {key::kThermalStatusModel}) != 0) {
        KLOGD("No thermal status model.");
        return -1;
    }
    if (parseThermalStatusConf(model) != 0) {
        KLOGE("Parse thermal status config faild.");
        return -1;
    }
    KLOGD("thermal status: {");
    printThermalStatusInfo();
    KLOGD("}");
    return 0;
}

int KelvoThermalStatus::parseThermalStatusConf(const Json::Value& model) {
    const ThermalModelReading reading = kelvo::readThermalModel(model);
    kelvo::ThermalStatusModel parsed;
    if (getTripTemp(reading, parsed.tripTemps) != 0) {
        KLOGE("Get trip temp faild.");
        return -1;
    }
    if (getTSArea(reading, parsed.statusAreas) != 0) {
        KLOGE("Get thermal status area faild.");
        return -1;
    }
    if (hasFault(reading.faults, kelvo::ConfigFault::Kind::WRONG_LENGTH, key::kThermalStatus)) {
        KLOGE("Invalid temp threshold.");
        return -1;
    }
    if (getTSReprot(reading, parsed.statusReports) != 0) {
        KLOGE("Get thermal status report faild.");
        return -1;
    }
    if (getTripDownTemp(reading, parsed.tripDownTemps) != 0) {
        KLOGE("Get trip down temp faild.");
        return -1;
    }
    mDefaultTS = std::move(parsed);
    return 0;
}

void KelvoThermalStatus::printThermalStatusInfo() const {
    KLOGD("\ttemp_threshold: %s", kelvo::joinValues(mDefaultTS.tripTemps).c_str());
    KLOGD("\tstatus_area: %s", kelvo::joinValues(mDefaultTS.statusAreas).c_str());
    KLOGD("\tstatus_report: %s", kelvo::joinValues(mDefaultTS.statusReports).c_str());
}

int KelvoThermalStatus::getTripTemp(const ThermalModelReading& reading, std::vector<int>& out) {
    printEntries(reading.tripTemps.values,
                 [](int i, int value) { KLOGD("Thermal status threshold %d: %d", i, value); });
    return takeList(reading.tripTemps, "Wrong trip temp config", out);
}

int KelvoThermalStatus::getTripDownTemp(const ThermalModelReading& reading, std::vector<int>& out) {
    printEntries(reading.tripDownTemps.values,
                 [](int i, int value) { KLOGD("Thermal status down threshold %d: %d", i, value); });
    return takeList(reading.tripDownTemps, "Wrong trip down temp config", out);
}

int KelvoThermalStatus::getTSArea(const ThermalModelReading& reading, std::vector<int>& out) {
    printEntries(reading.statusAreas.values,
                 [](int i, int value) { KLOGD("Thermal status area %d: %d", i, value); });
    return takeList(reading.statusAreas, "Wrong thermal status area config", out);
}

int KelvoThermalStatus::getTSReprot(const ThermalModelReading& reading, std::vector<int>& out) {
    // In the words for the thresholds.
    return takeList(reading.statusReports, "Wrong trip temp config", out);
}
