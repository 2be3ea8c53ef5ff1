#include "sim/framework/FrameworkListener.h"

namespace sim {

using android::OK;
using android::Parcel;
using android::status_t;

void FrameworkListener::failNext(uint32_t code, int32_t count) {
    android::Mutex::Autolock lock(mMutex);
    mFailures[code] = count;
}

const android::String16& FrameworkListener::getInterfaceDescriptor() const {
    return client::listenerDescriptor();
}

bool FrameworkListener::takeFailure(uint32_t code) {
    android::Mutex::Autolock lock(mMutex);
    const auto left = mFailures.find(code);
    if (left == mFailures.end() || left->second <= 0) {
        return false;
    }
    --left->second;
    return true;
}

status_t FrameworkListener::onTransact(uint32_t code, const Parcel& data, Parcel* reply,
                                       uint32_t flags) {
    client::ListenerCall call;
    const status_t status = client::readListenerCall(*this, code, data, call);
    if (status == android::UNKNOWN_TRANSACTION) {
        return BBinder::onTransact(code, data, reply, flags);
    }
    if (!isBinderAlive()) {
        return android::DEAD_OBJECT;
    }
    if (status != OK) {
        return status;
    }
    mOnCall(call.event, call.members);
    if (takeFailure(code)) {
        return android::FAILED_TRANSACTION;
    }
    client::answerListenerCall(call, reply);
    return OK;
}

}  // namespace sim
