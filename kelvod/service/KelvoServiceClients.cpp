// Listeners and what they are told.

#include "service/KelvoService.h"

// Needs the headers that the one above includes first.
#include <binder/IPCThreadState.h>

#include "base/Log.h"
#include "core/MessageManager.h"
#include "thermalstatus/KelvoThermalStatus.h"

namespace kelvo {

namespace {

void post(int32_t what, const android::sp<android::IBinder>& listener) {
    KelvoMessage message;
    message.what = what;
    message.iParam = static_cast<int32_t>(android::IPCThreadState::self()->getCallingUid());
    message.binder = listener;
    MessageManager::getInstance().sendMessage(message);
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
    post(MSG_REGISTER_CLIENT, listener);
    reply.writeInt32(1);
}

void KelvoService::unregisterClient(const Parcel& data, Parcel& reply) {
    KLOGI("Unregister client");
    post(MSG_UNREGISTER_CLIENT, data.readStrongBinder());
    reply.writeInt32(1);
}

void KelvoService::getThermalStatus(const Parcel&, Parcel& reply) {
    const int32_t status = KelvoThermalStatus::getInstance().getThermalStatus();
    KLOGI("Get thermal status: %d", status);
    reply.writeNoException();
    reply.writeInt32(status);
}

void KelvoService::notifyThermalStatus(const Parcel& data, Parcel&) {
    KelvoMessage message;
    message.what = MSG_NOTIFY_THERMAL_STATUS;
    message.iValue = data.readInt32();
    MessageManager::getInstance().sendMessage(message);
}

}  // namespace kelvo
