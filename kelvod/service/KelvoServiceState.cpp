// What the framework tells of the device.

#include "base/Log.h"
#include "core/KelvoMessages.h"
#include "core/KelvoState.h"
#include "core/MessageManager.h"
#include "links/ChargerProxyService.h"
#include "service/KelvoService.h"
#include "service/ParcelText.h"
#include "shelltemp/ShellTempFitting.h"

namespace kelvo {

namespace {

void postScene(ShellFittingSceneOpCode opCode) {
    MessageManager::getInstance().sendMessage(messages::sceneOpCode(opCode));
}

}  // namespace

void KelvoService::setScreenStatus(const Parcel& data, Parcel&) {
    const int32_t status = data.readInt32();
    KLOGD("Kelvo screen status: %d", status);
    KelvoState::getInstance().updateDisplayState(status);
    ChargerProxyService::getInstance().notifyScreenStatus(status);
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

}  // namespace kelvo
