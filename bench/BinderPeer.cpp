#include "BinderPeer.h"

#include <binder/Binder.h>
#include <binder/IPCThreadState.h>
#include <binder/ProcessState.h>
#include <poll.h>
#include <unistd.h>

#include <cstdlib>

namespace bench {

namespace {

using android::BBinder;
using android::IPCThreadState;
using android::Parcel;
using android::ProcessState;
using android::sp;
using android::status_t;
using android::String16;

constexpr uint32_t kCode = 22;
constexpr size_t kMaxThreads = 15;
constexpr int kTries = 500;
constexpr int kPauseMs = 10;

const String16& descriptor() {
    static const String16 kDescriptor("com.zenta.kelvo.IKelvoService");
    return kDescriptor;
}

class Server : public BBinder {
    status_t onTransact(uint32_t code, const Parcel& in, Parcel* out, uint32_t flags) override {
        if (code != kCode) {
            return BBinder::onTransact(code, in, out, flags);
        }
        if (!in.enforceInterface(descriptor())) {
            return android::PERMISSION_DENIED;
        }
        const int32_t value = in.readInt32();
        out->writeInt32(value);
        return out->writeInt32(value + 1);
    }
};

}  // namespace

bool onKernelDriver() {
    const char* const driver = std::getenv("KELVO_BINDER");
    return driver != nullptr && std::string(driver) == "kernel";
}

int serveCalls(int readyFd) {
    const sp<ProcessState> process = ProcessState::self();
    process->setThreadPoolMaxThreadCount(kMaxThreads);
    IPCThreadState::self()->setTheContextObject(new Server);
    // The kernel gives the place of a server that has ended free a little later only.
    for (int tries = kTries; !process->becomeContextManager(nullptr, nullptr); --tries) {
        if (tries == 0) {
            return 1;
        }
        poll(nullptr, 0, kPauseMs);
    }
    process->startThreadPool();
    close(readyFd);
    IPCThreadState::self()->joinThreadPool();
    return 0;
}

BinderCaller::BinderCaller() : mServer(ProcessState::self()->getContextObject(nullptr)) {}

bool BinderCaller::roundTrip() const {
    constexpr int32_t kValue = 41;
    Parcel data;
    Parcel reply;
    data.writeInterfaceToken(descriptor());
    data.writeInt32(kValue);
    return mServer != nullptr && mServer->transact(kCode, data, &reply) == android::OK &&
           reply.readInt32() == kValue && reply.readInt32() == kValue + 1;
}

}  // namespace bench
