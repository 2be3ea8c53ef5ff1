#include "service/IKelvoNotifier.h"

#include <binder/Parcel.h>

#include "base/Log.h"

namespace kelvo {

using android::OK;
using android::Parcel;
using android::status_t;

DO_NOT_DIRECTLY_USE_ME_IMPLEMENT_META_INTERFACE(KelvoNotifier,
                                                "com.zenta.thermalcontrol.IThermalStatusListener")

// A listener of the older kind answers a status with an empty reply, so no exception is read.
int BpKelvoNotifier::notifyThermalStatus(int status) {
    Parcel data;
    Parcel reply;
    data.writeInterfaceToken(getInterfaceDescriptor());
    data.writeInt32(status);
    const status_t ret = remote()->transact(NOTIFY_THERMAL_STATUS, data, &reply);
    if (ret != OK) {
        KLOGE("Kelvo service notify thermal status: ret(%d)", ret);
        return -1;
    }
    KLOGE("Notify thermal status: %d", status);
    return 0;
}

int BpKelvoNotifier::notifyThermalBroadCast(int level, int temp) {
    Parcel data;
    Parcel reply;
    data.writeInterfaceToken(getInterfaceDescriptor());
    data.writeInt32(level);
    data.writeInt32(temp);
    const status_t ret = remote()->transact(NOTIFY_THERMAL_BROADCAST, data, &reply);
    if (ret != OK) {
        KLOGE("Kelvo service notify thermal broadcast: ret(%d)", ret);
        return -1;
    }
    const int32_t exception = reply.readExceptionCode();
    if (exception < 0) {
        KLOGE("Kelvo service notify broadcast caught exception %d\n", exception);
        return -1;
    }
    return 0;
}

int BpKelvoNotifier::notifyAmbientThermal(int temp) {
    Parcel data;
    Parcel reply;
    data.writeInterfaceToken(getInterfaceDescriptor());
    data.writeInt32(temp);
    const status_t ret = remote()->transact(NOTIFY_AMBIENT_THERMAL, data, &reply);
    if (ret != OK) {
        KLOGE("notify ambient: ret(%d) %d", ret, static_cast<int>(NOTIFY_AMBIENT_THERMAL));
        return -1;
    }
    const int32_t exception = reply.readExceptionCode();
    if (exception < 0) {
        KLOGE("Kelvo service notify ambient caught exception %d\n", exception);
        return -1;
    }
    return 0;
}

int BpKelvoNotifier::notifyComponentHeat(int level, int temp, const std::string& detail) {
    Parcel data;
    Parcel reply;
    data.writeInterfaceToken(getInterfaceDescriptor());
    data.writeInt32(level);
    data.writeInt32(temp);
    data.writeString16(android::String16(detail.c_str(), detail.size()));
    const status_t ret = remote()->transact(NOTIFY_COMPONENT_HEAT, data, &reply);
    if (ret != OK) {
        KLOGE("Kelvo service notifyComponentHeat: ret(%d)", ret);
        return -1;
    }
    const int32_t exception = reply.readExceptionCode();
    if (exception < 0) {
        KLOGE("Kelvo service notifyComponentHeat caught exception %d\n", exception);
        return -1;
    }
    return 0;
}

}  // namespace kelvo
