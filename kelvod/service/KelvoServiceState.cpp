// What the framework tells of the device, and the test of the components' heat.

#include <utils/String8.h>

#include "core/KelvoState.h"
#include "core/Log.h"
#include "core/MessageManager.h"
#include "core/Scene.h"
#include "service/KelvoService.h"
#include "shelltemp/ShellTempFitting.h"

namespace kelvo {

namespace {

void postScene(ShellFittingSceneOpCode opCode) {
    KelvoMessage message;
    message.what = MSG_SCENE_OP_CODE;
    message.iValue = static_cast<int32_t>(opCode);
    MessageManager::getInstance().sendMessage(message);
}

std::string readText(const android::Parcel& data) {
    const android::String8 text(data.readString16());
    return {text.string(), text.size()};
}

}  // namespace

void KelvoService::setScreenStatus(const Parcel& data, Parcel&) {
    const int32_t status = data.readInt32();
    KLOGD("Kelvo screen status: %d", status);
    KelvoState::getInstance().updateDisplayState(status);
}

void KelvoService::setCurrentPackage(const Parcel& data, Parcel&) {
    const std::string package = readText(data);
    KelvoState::getInstance().updateState(package);
    KLOGD("Kelvo daemon current package: pkg=%s", package.c_str());
}

void KelvoService::setLightLampStatus(const Parcel& data, Parcel&) {
    const int32_t status = data.readInt32();
    KLOGE("light lamp status: %d", status);
    postScene(status == 1 ? ShellFittingSceneOpCode::FLASH_ON : ShellFittingSceneOpCode::RESTORE);
}

void KelvoService::setScreenFoldStatus(const Parcel& data, Parcel&) {
    const int32_t status = data.readInt32();
    KLOGE("screen fold status: %d", status);
    const bool folded = status != 1;
    ShellTempFitting::getInstance().updateFoldStatus(folded);
    postScene(folded ? ShellFittingSceneOpCode::SCREEN_FOLD : ShellFittingSceneOpCode::RESTORE);
}

void KelvoService::testComponentHeat(const Parcel& data, Parcel&) {
    KLOGE("COMPONENT_HEAT_TEST status: %d", data.readInt32());
}

void KelvoService::setWifiInfo(const Parcel& data, Parcel&) {
    KLOGE("Kelvo daemon wifiInfo=%s", readText(data).c_str());
}

void KelvoService::setNetworkInfo(const Parcel& data, Parcel&) {
    KLOGE("Kelvo daemon networkInfo=%s", readText(data).c_str());
}

void KelvoService::setNetworkSpeedInfo(const Parcel& data, Parcel&) {
    KLOGE("Kelvo daemon networkSpeedInfo=%s", readText(data).c_str());
}

void KelvoService::getComponentsHeatDetail(const Parcel&, Parcel& reply) {
    reply.writeNoException();
    reply.writeString16(android::String16());
}

}  // namespace kelvo
