#include "TestClient.h"

#include <gtest/gtest.h>
#include <sys/socket.h>

#include <cerrno>
#include <cstring>
#include <map>

#include "CommandReader.h"

using android::base::unique_fd;

namespace binderhub {

namespace {

const std::map<uint32_t, std::string> kNames = {
        {BR_NOOP, ""},
        {BR_TRANSACTION, "TRANSACTION"},
        {BR_REPLY, "REPLY"},
        {BR_DEAD_REPLY, "DEAD_REPLY"},
        {BR_FAILED_REPLY, "FAILED_REPLY"},
        {BR_TRANSACTION_COMPLETE, "COMPLETE"},
        {BR_INCREFS, "INCREFS"},
        {BR_ACQUIRE, "ACQUIRE"},
        {BR_RELEASE, "RELEASE"},
        {BR_DECREFS, "DECREFS"},
        {BR_SPAWN_LOOPER, "SPAWN"},
        {BR_DEAD_BINDER, "DEAD"},
        {BR_CLEAR_DEATH_NOTIFICATION_DONE, "CLEARED"},
};

}  // namespace

Batch& Batch::transfer(uint32_t command, uint32_t handle, const Objects& objects, uint32_t flags) {
    binder_transaction_data data = {};
    data.target.handle = handle;
    data.flags = flags;
    data.data_size = objects.size() * sizeof(flat_binder_object);
    data.offsets_size = objects.size() * sizeof(binder_size_t);
    data.data.ptr.offsets = data.data_size;
    payload.resize(data.data_size + data.offsets_size);
    for (size_t i = 0; i < objects.size(); ++i) {
        const binder_size_t offset = i * sizeof(flat_binder_object);
        memcpy(payload.data() + offset, &objects[i], sizeof(flat_binder_object));
        memcpy(payload.data() + data.data_size + i * sizeof(offset), &offset, sizeof(offset));
    }
    return add(command, data);
}

void TestThread::send(const Batch& batch, bool wantsReturns) {
    OutMessage message;
    message.header.kind = kExchange;
    message.header.flags = wantsReturns && !mWaits ? uint32_t{kWantsReturns} : 0;
    message.commands = batch.commands;
    message.payload = batch.payload;
    message.descriptors = batch.descriptors;
    mWaits = mWaits || wantsReturns;
    sendMessage(socket.get(), message, false);
    mHub.step(0);
}

void TestThread::sendRaw(const std::vector<uint8_t>& datagram) {
    ::send(socket.get(), datagram.data(), datagram.size(), MSG_NOSIGNAL);
    mHub.step(0);
}

std::string TestThread::read() {
    InMessage message;
    const int status = mReceiver.receive(socket.get(), false, kMaxPayload, &message);
    if (status != 1) {
        return status == -EAGAIN ? "" : "closed";
    }
    mWaits = false;
    std::string names;
    CommandReader returns(message.commands, isReturn);
    for (Command next; returns.next(&next);) {
        if (next.code == BR_TRANSACTION || next.code == BR_REPLY) {
            data = next.as<binder_transaction_data>();
        }
        const std::string& name = kNames.at(next.code);
        names += (names.empty() || name.empty() ? "" : " ") + name;
    }
    EXPECT_TRUE(returns.atEnd());
    if (message.header.bufferId != 0) {
        bufferId = message.header.bufferId;
        objects.resize(data.offsets_size / sizeof(binder_size_t));
        if (!objects.empty()) {
            memcpy(static_cast<void*>(objects.data()), message.payload.data(),
                   objects.size() * sizeof(flat_binder_object));
        }
        descriptors = std::move(message.descriptors);
    }
    return names;
}

TestProcess::TestProcess(Hub& hub, pid_t pid, uid_t uid) : mHub(hub) {
    unique_fd other;
    android::base::Socketpair(SOCK_SEQPACKET | SOCK_CLOEXEC, &socket, &other);
    hub.attach(std::move(other), pid, uid);
    ask(kHello, kProtocolVersion);
}

int TestProcess::ask(Kind kind, uint32_t value, std::span<const uint8_t> payload) {
    OutMessage message;
    message.header.kind = kind;
    message.header.value = value;
    message.payload = payload;
    sendMessage(socket.get(), message, false);
    mHub.step(0);
    return mReceiver.receive(socket.get(), false, kMaxPayload, &answer) == 1 ? answer.header.status
                                                                             : -EPIPE;
}

TestThread TestProcess::newThread() {
    ask(kNewThread, 0);
    return {mHub, answer.descriptors.empty() ? unique_fd() : std::move(answer.descriptors[0])};
}

TestThread TestProcess::newLooper() {
    TestThread thread = newThread();
    thread.send(Batch().add(BC_ENTER_LOOPER));
    return thread;
}

int TestProcess::becomeManager() {
    const flat_binder_object node = object(BINDER_TYPE_BINDER, 0);
    return ask(kBecomeContextManager, 0, {reinterpret_cast<const uint8_t*>(&node), sizeof(node)});
}

}  // namespace binderhub
