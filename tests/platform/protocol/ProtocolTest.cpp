#include "ProtocolTest.h"

#include <binder/IServiceManager.h>
#include <binder/ProcessState.h>

#include <chrono>
#include <sstream>

namespace android {

namespace {

// Its main thread stays out of the pool, to hear the test also when all of that is blocked.
int serve(RoleLink& link) {
    std::istringstream words(link.argument());
    std::string name;
    size_t maxThreads = 0;
    words >> name >> maxThreads;
    const sp<BBinder> service = makeTestService(link);
    ProcessState::self()->setThreadPoolMaxThreadCount(maxThreads);
    ProcessState::self()->startThreadPool();
    const status_t status = defaultServiceManager()->addService(String16(name.c_str()), service);
    link.send(status == OK ? "ready" : "not added");
    while (link.receive(-1) == "release") {
        ask(service, kRelease);
    }
    return 0;
}

const Role kServe("serve", serve);

}  // namespace

Answer ask(const sp<IBinder>& binder, uint32_t code, std::initializer_list<int32_t> words,
           uint32_t flags) {
    Parcel data;
    Parcel reply;
    for (const int32_t word : words) {
        data.writeInt32(word);
    }
    const status_t status = binder->transact(code, data, &reply, flags);
    return {status, reply.readInt32()};
}

sp<IBinder> swapBinder(const sp<IBinder>& server, uint32_t code, const sp<IBinder>& binder) {
    Parcel data;
    Parcel reply;
    data.writeStrongBinder(binder);
    return server->transact(code, data, &reply) == OK ? reply.readStrongBinder() : nullptr;
}

bool eventually(const std::function<bool()>& holds) {
    const auto limit =
            std::chrono::steady_clock::now() + std::chrono::milliseconds(kBinderWorldLimitMs);
    while (!holds()) {
        if (std::chrono::steady_clock::now() > limit) {
            return false;
        }
    }
    return true;
}

ProtocolTest::ProtocolTest() : mServerProcess(startServer("server")) {
    ProcessState::self()->startThreadPool();
    mServer = defaultServiceManager()->checkService(String16("server"));
}

RoleProcess& ProtocolTest::startServer(const std::string& name, int maxThreads) {
    RoleProcess& process = mWorld.start("serve", name + " " + std::to_string(maxThreads));
    EXPECT_EQ("ready", process.receive());
    return process;
}

}  // namespace android
