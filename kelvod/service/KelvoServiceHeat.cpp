// The components' heat: what the framework tells of the radios, reports, and the test commands.

#include <iterator>

#include "base/Log.h"
#include "heat/CellularCompHeat.h"
#include "heat/HeatProcessCenter.h"
#include "heat/WifiCompHeat.h"
#include "links/QuorixManager.h"
#include "service/KelvoService.h"
#include "service/ParcelText.h"

namespace kelvo {

namespace {

/** Commands of COMPONENT_HEAT_TEST. What they give is only logged, where it is made. */
enum HeatCommand : int32_t {
    START_MONITOR = 1,
    STOP_MONITOR = 2,
    MAIN_HEAT = 3,
    HEAT_TEXT = 4,
    START_FEED = 5,
    STOP_FEED = 6,
    HEAT_DETAIL = 7,
};

void runHeatCommand(int32_t command) {
    HeatProcessCenter& center = *HeatProcessCenter::getInstance();
    switch (command) {
        case START_MONITOR:
            return center.startMonitor();
        case STOP_MONITOR:
            center.stopMonitor();
            return;
        case MAIN_HEAT:
            center.getMainHeatCompent();
            return;
        case HEAT_TEXT:
            center.getCompentsHeat();
            return;
        case START_FEED:
            QuorixManager::getInstance().regCallBack();
            QuorixManager::getInstance().startQuorix();
            return;
        case STOP_FEED:
            QuorixManager::getInstance().stopQuorix();
            return;
        case HEAT_DETAIL:
            center.getCompentsHeatDetailInfo();
            return;
        default:
            return;
    }
}

}  // namespace

void KelvoService::testComponentHeat(const Parcel& data, Parcel&) {
    const int32_t command = data.readInt32();
    KLOGE("COMPONENT_HEAT_TEST status: %d", command);
    runHeatCommand(command);
}

void KelvoService::setWifiInfo(const Parcel& data, Parcel&) {
    std::string text = readText(data);
    KLOGE("Kelvo daemon wifiInfo=%s", text.c_str());
    WifiCompHeat::getInstance().processWifiSignal(text);
}

void KelvoService::setNetworkInfo(const Parcel& data, Parcel&) {
    const std::string text = readText(data);
    KLOGE("Kelvo daemon networkInfo=%s", text.c_str());
    CellularCompHeat::getInstance().processCellularSignal(text);
}

void KelvoService::setNetworkSpeedInfo(const Parcel& data, Parcel&) {
    std::string text = readText(data);
    KLOGE("Kelvo daemon networkSpeedInfo=%s", text.c_str());
    if (HeatProcessCenter::getInstance()->isInvalid()) {
        return;
    }
    WifiCompHeat::getInstance().processWifiSpeed(text);
    CellularCompHeat::getInstance().processCellularSpeed(text);
}

void KelvoService::getComponentsHeatDetail(const Parcel&, Parcel& reply) {
    const std::string report = HeatProcessCenter::getInstance()->getCompentsHeatDetailInfo();
    reply.writeNoException();
    reply.writeString16(android::String16(report.data(), report.size()));
}

}  // namespace kelvo
