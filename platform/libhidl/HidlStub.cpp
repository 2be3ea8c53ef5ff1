#include <hidl_linux/HidlStub.h>

#include <hidl_linux/HidlCodes.h>
#include <log/log.h>

namespace android::hardware::details {

using hidl::base::V1_0::IBase;

const int HidlStub::kSubclassId = 0;

HidlStub::HidlStub(const sp<IBase>& object, const char* descriptor)
      : mObject(object), mDescriptor(descriptor) {}

status_t HidlStub::dispatch(uint32_t, const Parcel&, Parcel*) {
    return UNKNOWN_TRANSACTION;
}

status_t HidlStub::onTransact(uint32_t code, const Parcel& data, Parcel* reply, uint32_t flags) {
    const bool own = code >= FIRST_CALL_TRANSACTION && code <= LAST_CALL_TRANSACTION;
    const bool base = code == kNotifySyspropsChanged || code == kPing ||
                      code == kInterfaceDescriptor || code == kInterfaceChain;
    if (!own && !base) {
        return BBinder::onTransact(code, data, reply, flags);
    }
    if (!data.enforceInterface(own ? mDescriptor : String16(IBase::descriptor))) {
        return BAD_TYPE;
    }
    Parcel unread;  // a one-way call of this process brings no reply
    Parcel* answer = reply != nullptr ? reply : &unread;
    return own ? dispatch(code, data, answer) : dispatchBase(code, answer);
}

status_t HidlStub::dispatchBase(uint32_t code, Parcel* reply) {
    const auto call = [&](auto method) {
        return [this, method](const auto& callback) { return (mObject.get()->*method)(callback); };
    };
    switch (code) {
        case kInterfaceChain:
            return answer(reply, std::type_identity<IBase::interfaceChain_cb>(),
                          call(&IBase::interfaceChain));
        case kInterfaceDescriptor:
            return answer(reply, std::type_identity<IBase::interfaceDescriptor_cb>(),
                          call(&IBase::interfaceDescriptor));
        case kPing:
            return writeStatus(reply, mObject->ping());
        default:
            return writeStatus(reply, mObject->notifySyspropsChanged());
    }
}

status_t HidlStub::writeStatus(Parcel* reply, const return_status& result) {
    const Status& status = ReturnReader::statusOf(result);
    if (status.transactionError() != OK) {
        return status.transactionError();
    }
    reply->setDataSize(0);
    status_t written = reply->writeInt32(status.exceptionCode());
    if (written == OK && !status.isOk()) {
        written = Wire<hidl_string>::write(reply, status.exceptionMessage());
    }
    return written;
}

}  // namespace android::hardware::details
