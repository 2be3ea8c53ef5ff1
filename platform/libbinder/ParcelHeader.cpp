// What stands at the head of requests (interface token) and of replies (exception).

#include <binder/IPCThreadState.h>
#include <binder/Parcel.h>
#include <binder/Status.h>

#include <cstring>

namespace android {

namespace {

// Marks requests between processes of the system partition.
constexpr int32_t kSystemHeader = B_PACK_CHARS('S', 'Y', 'S', 'T');

// Asks the called side to gather its policy violations for the caller.
constexpr uint32_t kStrictModePenaltyGather = 1u << 31;

}  // namespace

status_t Parcel::writeInterfaceToken(const String16& interface) {
    const IPCThreadState* thread = IPCThreadState::self();
    const auto policy = static_cast<uint32_t>(thread->getStrictModePolicy());
    status_t status = writeUint32(policy | kStrictModePenaltyGather);
    updateWorkSourceRequestHeaderPosition();
    if (status == OK) {
        status = writeInt32(thread->shouldPropagateWorkSource()
                                    ? static_cast<int32_t>(thread->getCallingWorkSourceUid())
                                    : IPCThreadState::kUnsetWorkSource);
    }
    if (status == OK) {
        status = writeInt32(kSystemHeader);
    }
    return status != OK ? status : writeString16(interface);
}

bool Parcel::enforceInterface(const String16& interface, IPCThreadState* threadState) const {
    IPCThreadState* thread = threadState != nullptr ? threadState : IPCThreadState::self();
    const int32_t policy = readInt32();
    const bool oneWay = (thread->getLastTransactionBinderFlags() & IBinder::FLAG_ONEWAY) != 0;
    // Nobody waits for what a one-way call gathers.
    thread->setStrictModePolicy(oneWay ? 0 : policy);
    updateWorkSourceRequestHeaderPosition();
    thread->setCallingWorkSourceUidWithoutPropagation(static_cast<uid_t>(readInt32()));
    if (readInt32() != kSystemHeader) {
        return false;
    }
    size_t length;
    const char16_t* name = readString16Inplace(&length);
    return name != nullptr && length == interface.size() &&
           memcmp(name, interface.string(), length * sizeof(char16_t)) == 0;
}

bool Parcel::checkInterface(IBinder* binder) const {
    return enforceInterface(binder->getInterfaceDescriptor());
}

void Parcel::updateWorkSourceRequestHeaderPosition() const {
    if (!mRequestHeaderPresent) {
        mWorkSourceRequestHeaderPosition = dataPosition();
        mRequestHeaderPresent = true;
    }
}

status_t Parcel::writeNoException() {
    return binder::Status::ok().writeToParcel(this);
}

int32_t Parcel::readExceptionCode() const {
    binder::Status status;
    status.readFromParcel(*this);
    return status.exceptionCode();
}

}  // namespace android
