#include <hidl_linux/HidlProxy.h>

#include <binder/Status.h>

namespace android::hardware::details {

namespace {

/** How the service says the call ended; it stands before the results. */
Status readStatus(const Parcel& reply) {
    int32_t exception = Status::EX_NONE;
    hidl_string message;
    status_t status = reply.readInt32(&exception);
    if (status == OK && exception != Status::EX_NONE) {
        status = Wire<hidl_string>::read(reply, &message);
    }
    return status != OK ? Status::fromStatusT(status)
                        : Status::fromExceptionCode(exception, message.c_str());
}

}  // namespace

void OutgoingCall::writeToken(const char* descriptor) {
    mStatus.setFromStatusT(mRequest.writeInterfaceToken(String16(descriptor)));
}

const Status& OutgoingCall::transact(IBinder* remote, uint32_t code, uint32_t flags) {
    if (!mStatus.isOk()) {
        return mStatus;
    }
    const bool oneWay = (flags & IBinder::FLAG_ONEWAY) != 0;
    mStatus.setFromStatusT(remote->transact(code, mRequest, oneWay ? nullptr : &mReply, flags));
    if (mStatus.isOk() && !oneWay) {
        mStatus = readStatus(mReply);
    }
    return mStatus;
}

}  // namespace android::hardware::details
