#include "links/IZentaQuorixModuleUsage.h"

#include <binder/Parcel.h>

namespace kelvo {

using android::BAD_TYPE;
using android::OK;
using android::Parcel;
using android::status_t;
using android::binder::Status;

DO_NOT_DIRECTLY_USE_ME_IMPLEMENT_META_INTERFACE(ZentaQuorixModuleUsage,
                                                "com.zenta.pelko.IZentaQuorixModuleUsage")

Status BpZentaQuorixModuleUsage::informModuleUsage(int32_t version,
                                                   const std::vector<uint8_t>& data) {
    Parcel request;
    Parcel reply;
    request.writeInterfaceToken(getInterfaceDescriptor());
    request.writeInt32(version);
    request.writeByteVector(data);
    const status_t error = remote()->transact(INFORM_MODULE_USAGE, request, &reply);
    Status status;
    return Status::fromStatusT(error == OK ? status.readFromParcel(reply) : error);
}

status_t BnZentaQuorixModuleUsage::onTransact(uint32_t code, const Parcel& data, Parcel* reply,
                                              uint32_t flags) {
    if (code != INFORM_MODULE_USAGE && code != GET_TESSIL_STATS) {
        return BBinder::onTransact(code, data, reply, flags);
    }
    if (!data.checkInterface(this)) {
        return BAD_TYPE;
    }
    int32_t number = 0;
    std::vector<uint8_t> bytes;
    status_t error = data.readInt32(&number);
    if (error == OK && code == INFORM_MODULE_USAGE) {
        error = data.readByteVector(&bytes);
    }
    if (error != OK) {
        return error;
    }
    const bool informs = code == INFORM_MODULE_USAGE;
    const Status status =
            informs ? informModuleUsage(number, bytes) : getTessilStats(number, &bytes);
    error = status.writeToParcel(reply);
    if (error == OK && !informs && status.isOk()) {
        error = reply->writeByteVector(bytes);
    }
    return error;
}

}  // namespace kelvo
