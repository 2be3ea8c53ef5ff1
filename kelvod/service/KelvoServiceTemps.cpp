// Temperatures.

#include <vector>

#include "ambient/AmbientTempWatcher.h"
#include "base/Log.h"
#include "core/KelvoState.h"
#include "service/KelvoService.h"
#include "shelltemp/ShellTempFitting.h"

namespace kelvo {

namespace {

constexpr int32_t kNoTemp = -1;

void writeTemps(android::Parcel& reply, const std::vector<int32_t>& temps) {
    reply.writeInt32(static_cast<int32_t>(temps.size()));
    reply.writeInt32Vector(temps);
}

/** The first specified zone's temperature; -1 without such zones or when one cannot be read. */
void writeBatteryTemp(android::Parcel& reply) {
    std::vector<int32_t> temps;
    if (ShellTempFitting::getInstance().getSpecifiedZoneTemps(temps) < 0) {
        reply.writeInt32(kNoTemp);
    } else if (!temps.empty()) {
        KLOGD("SHELL_TEMP_AND_TYPE battery %d", temps.front());
        reply.writeInt32(temps.front());
    }
}

}  // namespace

void KelvoService::getCurrentTemp(const Parcel&, Parcel& reply) {
    reply.writeFloat(KelvoState::getInstance().getTempCelsius());
}

void KelvoService::getSpecifiedZoneTemps(const Parcel&, Parcel& reply) {
    std::vector<int32_t> temps;
    if (ShellTempFitting::getInstance().getSpecifiedZoneTemps(temps) < 0) {
        reply.writeInt32(kNoTemp);
    } else {
        writeTemps(reply, temps);
    }
}

void KelvoService::getAllShellTemps(const Parcel&, Parcel& reply) {
    std::vector<int32_t> temps;
    for (const auto& [index, temp] : ShellTempFitting::getInstance().getFittingTemps()) {
        temps.insert(index == mShellTempPriorityIndex ? temps.begin() : temps.end(), temp);
        KLOGD("GET ALL_SHELL_TEMPS,TZ INDEX:%d,TZ TEMP:%d", index, temp);
    }
    if (temps.size() == static_cast<size_t>(mShellTempCount)) {
        temps.erase(temps.begin());
    } else {
        temps.resize(static_cast<size_t>(mShellTempReplySize), kNoTemp);
    }
    writeTemps(reply, temps);
}

void KelvoService::getShellTempAndType(const Parcel&, Parcel& reply) {
    const int32_t type = ShellTempFitting::getInstance().getCurrentFittingModelType();
    const int32_t temp = KelvoState::getInstance().getTemp();
    // Not BATTERY_ZONE, although the line speaks of the battery: what the transaction answers is
    // agreed with its clients.
    if (type == static_cast<int32_t>(FittingModelKind::OTHER_ZONE)) {
        writeBatteryTemp(reply);
    } else {
        reply.writeInt32(temp);
    }
    reply.writeInt32(type);
    KLOGD("SHELL_TEMP_AND_TYPE %d, %d", temp, type);
}

void KelvoService::isNewSafetyType(const Parcel&, Parcel& reply) {
    const int32_t type = ShellTempFitting::getInstance().isOldSafetyProject();
    KLOGD("IS_NEW_SAFETY_TYPE %d", type);
    reply.writeInt32(type);
}

void KelvoService::getAmbientTemp(const Parcel&, Parcel& reply) {
    reply.writeInt32(AmbientTempWatcher::getInstance().getAmbientTemp());
}

}  // namespace kelvo
