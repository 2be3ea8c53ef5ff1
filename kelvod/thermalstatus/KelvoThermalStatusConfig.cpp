// Reading "shell_temp_broadcast" and "thermal_status_model".

#include "base/JoinValues.h"
#include "base/Log.h"
#include "config/KelvoConfig.h"
#include "thermalstatus/KelvoThermalStatus.h"
#include "thermalstatus/ThermalList.h"

namespace {

constexpr Json::ArrayIndex kBandEnds = 2;

int readBound(const Json::Value& value, int32_t otherwise) {
    return value.isInt() ? value.asInt() : otherwise;
}

/** Says where a list falls. Whether it can be used. */
bool checkList(const kelvo::ThermalList& list) {
    if (list.falling) {
        KLOGE("config[i-1] i=%d, value=%d", static_cast<int>(*list.falling),
              list.values[*list.falling - 1]);
    }
    return list.isUsable();
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
void KelvoThermalStatus::readBroadcastConfig() {
    Json::Value config;
    if (kelvo::KelvoConfig::getInstance().getConfig(&config, {"shell_temp_broadcast"}) != 0 ||
        !config.isObject()) {
        return;
    }
    const Json::Value& disable = config["disable"];
    if (disable.isInt() && disable.asInt() == 1) {
        mBroadcastEnabled = false;
        return;
    }
    const Json::Value& ends = config["start_end_values"];
    if (ends.isArray() && ends.size() == kBandEnds) {
        mBroadcastLow = readBound(ends[0], mBroadcastLow);
        mBroadcastHigh = readBound(ends[1], mBroadcastHigh);
        KLOGE("KelvoThermalStatus %d,%d", mBroadcastLow, mBroadcastHigh);
    }
}

int KelvoThermalStatus::initConfig() {
    android::Mutex::Autolock lock(mMutex);
    Json::Value model;
    if (kelvo::KelvoConfig::getInstance().getConfig(&model, {"thermal_status_model"}) != 0) {
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
    kelvo::ThermalStatusModel parsed;
    if (!model.isObject() || getTripTemp(model, parsed.tripTemps) != 0) {
        KLOGE("Get trip temp faild.");
        return -1;
    }
    if (getTSArea(model, parsed.statusAreas) != 0) {
        KLOGE("Get thermal status area faild.");
        return -1;
    }
    if (parsed.tripTemps.size() != parsed.statusAreas.size()) {
        KLOGE("Invalid temp threshold.");
        return -1;
    }
    if (getTSReprot(model, parsed.statusReports) != 0) {
        KLOGE("Get thermal status report faild.");
        return -1;
    }
    if (getTripDownTemp(model, parsed.tripDownTemps) != 0) {
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

int KelvoThermalStatus::getTripTemp(const Json::Value& model, std::vector<int>& out) {
    const kelvo::ThermalList list = kelvo::readThermalList(model["temp_threshold"]);
    if (!list.isArray) {
        return -1;
    }
    printEntries(list.values,
                 [](int i, int value) { KLOGD("Thermal status threshold %d: %d", i, value); });
    if (!checkList(list)) {
        KLOGE("Wrong trip temp config");
        out.clear();
        return -1;
    }
    out = list.values;
    return 0;
}

int KelvoThermalStatus::getTripDownTemp(const Json::Value& model, std::vector<int>& out) {
    const kelvo::ThermalList list = kelvo::readThermalList(model["temp_threshold_down"]);
    if (!list.isArray) {
        return -1;
    }
    printEntries(list.values,
                 [](int i, int value) { KLOGD("Thermal status down threshold %d: %d", i, value); });
    if (!checkList(list)) {
        KLOGE("Wrong trip down temp config");
        out.clear();
        return -1;
    }
    out = list.values;
    return 0;
}

int KelvoThermalStatus::getTSArea(const Json::Value& model, std::vector<int>& out) {
    const kelvo::ThermalList list = kelvo::readThermalList(model["thermal_status"]);
    if (!list.isArray) {
        return -1;
    }
    printEntries(list.values,
                 [](int i, int value) { KLOGD("Thermal status area %d: %d", i, value); });
    if (!checkList(list)) {
        KLOGE("Wrong thermal status area config");
        out.clear();
        return -1;
    }
    out = list.values;
    return 0;
}

int KelvoThermalStatus::getTSReprot(const Json::Value& model, std::vector<int>& out) {
    const kelvo::ThermalList list = kelvo::readThermalList(model["thermal_status_report"]);
    if (!list.isArray) {
        return -1;
    }
    if (!checkList(list)) {
        KLOGE("Wrong trip temp config");  // in the words for the thresholds
        out.clear();
        return -1;
    }
    out = list.values;
    return 0;
}
