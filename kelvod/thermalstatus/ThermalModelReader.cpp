#include "thermalstatus/ThermalList.h"

#include "thermalstatus/ThermalLevels.h"

namespace kelvo {

ThermalList readThermalList(const Json::Value& value) {
    ThermalList list;
    list.isArray = value.isArray();
    for (Json::ArrayIndex i = 0; list.isArray && i < value.size(); ++i) {
        if (value[i].isInt()) {
            list.values.push_back(value[i].asInt());
        } else {
            list.skipped.push_back(i);
        }
    }
    list.falling = firstFallingEntry(list.values);
    return list;
}

}  // namespace kelvo
