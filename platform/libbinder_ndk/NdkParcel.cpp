// Parcels as a whole, and single values in them.

#include "NdkParcel.h"

#include <android-base/unique_fd.h>

#include <cstring>

#include "NdkStatus.h"
#include "StatusCodes.h"

using android::Parcel;
using android::sp;

binder_status_t readLength(const Parcel& parcel, size_t leastBytes, int32_t* length) {
    if (const android::status_t status = parcel.readInt32(length); status != android::OK) {
        return statusToPass(status);
    }
    if (*length < kNullLength) {
        return STATUS_BAD_VALUE;
    }
    const bool fits =
            *length <= 0 || static_cast<size_t>(*length) <= parcel.dataAvail() / leastBytes;
    return fits ? STATUS_OK : STATUS_NOT_ENOUGH_DATA;
}

AParcel* AParcel_create() {
    return new AParcel(nullptr);
}

void AParcel_delete(AParcel* parcel) {
    delete parcel;
}

binder_status_t AParcel_setDataPosition(const AParcel* parcel, int32_t position) {
    if (position < 0) {
        return STATUS_BAD_VALUE;
    }
    parcel->get()->setDataPosition(static_cast<size_t>(position));
    return STATUS_OK;
}

int32_t AParcel_getDataPosition(const AParcel* parcel) {
    return static_cast<int32_t>(parcel->get()->dataPosition());
}

binder_status_t AParcel_writeStrongBinder(AParcel* parcel, AIBinder* binder) {
    return statusToPass(
            parcel->get()->writeStrongBinder(binder != nullptr ? binder->getBinder() : nullptr));
}

binder_status_t AParcel_readStrongBinder(const AParcel* parcel, AIBinder** binder) {
    *binder = nullptr;
    sp<android::IBinder> found;
    const android::status_t status = parcel->get()->readNullableStrongBinder(&found);
    if (status == android::OK) {
        *binder = giveOut(ndkBinderOf(found));
    }
    return statusToPass(status);
}

// A mark that there is one, a mark that no second descriptor follows, the descriptor.
binder_status_t AParcel_writeParcelFileDescriptor(AParcel* parcel, int fd) {
    Parcel* to = parcel->get();
    if (fd < 0) {
        return fd == -1 ? statusToPass(to->writeInt32(0)) : STATUS_BAD_VALUE;
    }
    android::status_t status = to->writeInt32(1);
    if (status == android::OK) {
        status = to->writeInt32(0);
    }
    return statusToPass(status == android::OK ? to->writeDupFileDescriptor(fd) : status);
}

binder_status_t AParcel_readParcelFileDescriptor(const AParcel* parcel, int* fd) {
    *fd = -1;
    const Parcel& from = *parcel->get();
    int32_t present = 0;
    int32_t hasStatusChannel = 0;
    android::status_t status = from.readInt32(&present);
    if (status != android::OK || present == 0) {
        return statusToPass(status);
    }
    android::base::unique_fd found;
    status = from.readInt32(&hasStatusChannel);
    if (status == android::OK) {
        status = from.readUniqueFileDescriptor(&found);
    }
    // The descriptor by which the sender would learn how the file was closed: not used, but passed.
    if (status == android::OK && hasStatusChannel != 0 && from.readFileDescriptor() < 0) {
        status = android::BAD_TYPE;
    }
    if (status == android::OK) {
        *fd = found.release();
    }
    return statusToPass(status);
}

binder_status_t AParcel_writeStatusHeader(AParcel* parcel, const AStatus* status) {
    return statusToPass(status->status.writeToParcel(parcel->get()));
}

binder_status_t AParcel_readStatusHeader(const AParcel* parcel, AStatus** status) {
    auto found = std::make_unique<AStatus>();
    const android::status_t result = found->status.readFromParcel(*parcel->get());
    if (result == android::OK) {
        *status = found.release();
    }
    return statusToPass(result);
}

binder_status_t AParcel_writeInt32(AParcel* parcel, int32_t value) {
    return statusToPass(parcel->get()->writeInt32(value));
}

binder_status_t AParcel_writeInt64(AParcel* parcel, int64_t value) {
    return statusToPass(parcel->get()->writeInt64(value));
}

binder_status_t AParcel_writeFloat(AParcel* parcel, float value) {
    return statusToPass(parcel->get()->writeFloat(value));
}

binder_status_t AParcel_writeDouble(AParcel* parcel, double value) {
    return statusToPass(parcel->get()->writeDouble(value));
}

binder_status_t AParcel_writeBool(AParcel* parcel, bool value) {
    return statusToPass(parcel->get()->writeBool(value));
}

binder_status_t AParcel_writeChar(AParcel* parcel, char16_t value) {
    return statusToPass(parcel->get()->writeChar(value));
}

binder_status_t AParcel_writeByte(AParcel* parcel, int8_t value) {
    return statusToPass(parcel->get()->writeByte(value));
}

binder_status_t AParcel_readInt32(const AParcel* parcel, int32_t* value) {
    return statusToPass(parcel->get()->readInt32(value));
}

binder_status_t AParcel_readInt64(const AParcel* parcel, int64_t* value) {
    return statusToPass(parcel->get()->readInt64(value));
}

binder_status_t AParcel_readFloat(const AParcel* parcel, float* value) {
    return statusToPass(parcel->get()->readFloat(value));
}

binder_status_t AParcel_readDouble(const AParcel* parcel, double* value) {
    return statusToPass(parcel->get()->readDouble(value));
}

binder_status_t AParcel_readBool(const AParcel* parcel, bool* value) {
    return statusToPass(parcel->get()->readBool(value));
}

binder_status_t AParcel_readChar(const AParcel* parcel, char16_t* value) {
    return statusToPass(parcel->get()->readChar(value));
}

binder_status_t AParcel_readByte(const AParcel* parcel, int8_t* value) {
    return statusToPass(parcel->get()->readByte(value));
}
