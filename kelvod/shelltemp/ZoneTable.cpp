#include "shelltemp/ZoneTable.h"

#include <stdio.h>

#include "base/FileUtils.h"
#include "config/ConfigNames.h"

namespace kelvo {

namespace {

constexpr size_t kPathSize = 256;

std::string readZoneType(int32_t index) {
    char path[kPathSize];
    snprintf(path, sizeof(path), "%s/thermal_zone%d/type", "/sys/class/thermal", index);
    std::string type = getFile(path);
    type.erase(type.find_last_not_of(" \t\n\v\f\r") + 1);
    return type;
}

}  // namespace

int32_t ZoneTable::discover() {
    for (int32_t index = 0;; ++index) {
        std::string type = readZoneType(index);
        if (type.empty()) {
            return index;
        }
        mIndexByType[type] = index;
        mTypes.push_back(std::move(type));
    }
}

void ZoneTable::add(std::string type) {
    mIndexByType[type] = static_cast<int32_t>(mTypes.size());
    mTypes.push_back(std::move(type));
}

int32_t ZoneTable::indexOf(const std::string& type) const {
    const auto found = mIndexByType.find(type);
    return found == mIndexByType.end() ? -1 : found->second;
}

std::string ZoneTable::typeOf(int32_t index) const {
    const bool known = index >= 0 && static_cast<size_t>(index) < mTypes.size();
    return known ? mTypes[static_cast<size_t>(index)] : "";
}

ZoneList resolveZoneList(const Json::Value& info, const ZoneTable& table) {
    ZoneList list;
    const Json::Value types = info.isObject() ? info[key::kThermalZoneType] : Json::Value();
    if (!types.isArray()) {
        return list;
    }
    for (const Json::Value& type : types) {
        const int32_t index = type.isString() ? table.indexOf(type.asString()) : -1;
        if (index < 0) {
            list.unknownType = type.toStyledString();
            break;
        }
        list.zones.push_back({index, type.asString()});
    }
    return list;
}

}  // namespace kelvo
