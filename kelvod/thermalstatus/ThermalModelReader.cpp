#include "thermalstatus/ThermalModelReader.h"

#include "config/ConfigNames.h"
#include "config/ConfigPath.h"
#include "thermalstatus/ThermalLevels.h"

namespace kelvo {

namespace {

using Kind = ConfigFault::Kind;

/** Reads the elements of an array. */
ThermalList readElements(const Json::Value& array, const char* name, ConfigFaults& faults) {
    ThermalList list;
    list.isArray = true;
    for (Json::ArrayIndex i = 0; i < array.size(); ++i) {
        if (array[i].isInt()) {
            list.values.push_back(array[i].asInt());
            list.elements.push_back(i);
        } else {
            faults.push_back({Kind::WRONG_TYPE, name, i});
        }
    }
    list.falling = firstFallingEntry(list.values);
    return list;
}

ThermalList readList(const Json::Value& section, const char* name, ConfigFaults& faults) {
    const Json::Value* const value = findMember(section, name);
    if (value == nullptr || !value->isArray()) {
        faults.push_back({value == nullptr ? Kind::MISSING : Kind::WRONG_TYPE, name});
        return {};
    }
    ThermalList list = readElements(*value, name, faults);
    if (list.values.empty()) {
        faults.push_back({Kind::EMPTY, name});
    }
    if (list.falling) {
        faults.push_back({Kind::FALLING, name, list.elements[*list.falling]});
    }
    return list;
}

/** Judges a list's length, unless it is empty, which is worse. */
void checkLength(const ThermalList& list, size_t length, const char* name, ConfigFaults& faults) {
    if (!list.values.empty() && list.values.size() != length) {
        faults.push_back({Kind::WRONG_LENGTH, name});
    }
}

}  // namespace

ThermalModelReading readThermalModel(const Json::Value& section) {
    ThermalModelReading reading;
    ConfigFaults& faults = reading.faults;
    reading.tripTemps = readList(section, key::kTempThreshold, faults);
    reading.statusAreas = readList(section, key::kThermalStatus, faults);
    reading.statusReports = readList(section, key::kThermalStatusReport, faults);
    reading.tripDownTemps = readList(section, key::kTempThresholdDown, faults);
    if (!reading.tripTemps.values.empty()) {
        checkLength(reading.statusAreas, reading.tripTemps.values.size(), key::kThermalStatus,
                    faults);
    }
    checkLength(reading.tripTemps, kThermalLevels, key::kTempThreshold, faults);
    checkLength(reading.tripDownTemps, kThermalLevels, key::kTempThresholdDown, faults);
    return reading;
}

}  // namespace kelvo
