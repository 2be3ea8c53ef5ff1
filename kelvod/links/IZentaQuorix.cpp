#include "links/IZentaQuorix.h"

#include <binder/Parcel.h>

namespace kelvo {

using android::OK;
using android::Parcel;
using android::status_t;
using android::binder::Status;

DO_NOT_DIRECTLY_USE_ME_IMPLEMENT_META_INTERFACE(ZentaQuorix, "com.zenta.pelko.IZentaQuorix")

namespace {

/** The engine answers with a status, and with a number when that is good. */
Status call(android::IBinder* engine, uint32_t code, const Parcel& data, int32_t* result) {
    Parcel reply;
    status_t error = engine->transact(code, data, &reply);
    if (error != OK) {
        return Status::fromStatusT(error);
    }
    Status status;
    error = status.readFromParcel(reply);
    if (error == OK && status.isOk()) {
        error = reply.readInt32(result);
    }
    return error == OK ? status : Status::fromStatusT(error);
}

}  // namespace

Status BpZentaQuorix::registerModuleUsageListener(int32_t kind,
                                                  const android::sp<android::IBinder>& listener,
                                                  int32_t* result) {
    Parcel data;
    data.writeInterfaceToken(getInterfaceDescriptor());
    data.writeInt32(kind);
    data.writeStrongBinder(listener);
    return call(remote(), REGISTER_MODULE_USAGE_LISTENER, data, result);
}

Status BpZentaQuorix::informThermalEvent(int32_t event, int32_t* result) {
    Parcel data;
    data.writeInterfaceToken(getInterfaceDescriptor());
    data.writeInt32(event);
    return call(remote(), INFORM_THERMAL_EVENT, data, result);
}

}  // namespace kelvo
