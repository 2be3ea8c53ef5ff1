// Listeners and what they are told.

#include "service/KelvoService.h"

// Needs the headers that the one above includes first.
#include <binder/IPCThreadState.h>

#include "base/Log.h"
#include "core/KelvoMessages.h"
#include "core/MessageManager.h"
#include "thermalstatus/KelvoThermalStatus.h"

namespace kelvo {

namespace {

int32_t callingUid() {
    return static_cast<int32_t>(android::IPCThreadState::self()->getCallingUid());
}

}  // namespace

void KelvoService::registerClient(const Parcel& data, Parcel& reply) {
    KLOGI("Register client");
    const android::sp<android::IBinder> listener = data.readStrongBinder();
    if (listener == nullptr) {
        KLOGE("Register client is null.");
        reply.writeInt32(-1);
        return;
    }
    MessageManager::getInstance().sendMessage(messages::registerClient(callingUid(), listener));
    reply.writeInt32(1);
}

void KelvoService::unregisterClient(const Parcel& data, Parcel& reply) {
    KLOGI("Unregister client");
    MessageManager::getInstance().sendMessage(
            messages::unregisterClient(callingUid(), data.readStrongBinder()));
    reply.writeInt32(1);
}

void KelvoService::getThermalStatus(const Parcel&, Parcel& reply) {
    const int32_t status = KelvoThermalStatus::getInstance().getThermalStatus();
    KLOGI("Get thermal status: %d", status);
    reply.writeNoException();
    reply.writeInt32(status);
}

void KelvoService::notifyThermalStatus(const Parcel& data, Parcel&) {
    MessageManager::getInstance().sendMessage(messages::notifyThermalStatus(data.readInt32()));
}

}  // namespace kelvo
