#include "sim/framework/FrameworkClient.h"

#include <android-base/unique_fd.h>
#include <binder/IServiceManager.h>
#include <binder/Parcel.h>
#include <binder_linux/LocalCall.h>
#include <sys/mman.h>
#include <unistd.h>

#include <array>
#include <utility>

#include "client/CallValues.h"
#include "common/Overloaded.h"

namespace sim {

namespace {

using android::IBinder;
using android::OK;
using android::Parcel;
using android::sp;
using android::status_t;
using android::String16;

constexpr uint32_t kRegister = 1;  // transaction codes
constexpr uint32_t kUnregister = 2;
constexpr uint32_t kListenerUid = 1000;  // of a listener that no action registers

String16 toString16(const std::string& text) {
    return String16(text.c_str(), text.size());
}

sp<IBinder> service() {
    return android::defaultServiceManager()->checkService(String16("kelvo"));
}

/** Sends a request that holds its token already; the caller is what `uid` says. */
status_t call(uint32_t code, const Parcel& data, Parcel* reply, uint32_t uid) {
    const sp<IBinder> kelvo = service();
    if (kelvo == nullptr) {
        return android::NAME_NOT_FOUND;
    }
    const android::LocalCall caller(uid, getpid());
    return kelvo->transact(code, data, reply);
}

void startRequest(Parcel& data) {
    data.writeInterfaceToken(String16(client::kServiceDescriptor));
}

/** All from here to the end. */
std::string readAll(int fd) {
    std::string text;
    std::array<char, 4096> bytes;
    for (ssize_t got = read(fd, bytes.data(), bytes.size()); got > 0;
         got = read(fd, bytes.data(), bytes.size())) {
        text.append(bytes.data(), static_cast<size_t>(got));
    }
    return text;
}

}  // namespace

sp<FrameworkListener> FrameworkClient::listener(const std::string& id) {
    Listener& listener = mListeners[id];
    if (listener.binder == nullptr) {
        listener.uid = kListenerUid;
        listener.binder = new FrameworkListener(
                [this, id](const std::string& event, const client::ListenerCall::Members& members) {
                    Event call{0, event, {{"listener", id}}};
                    call.members.insert(call.members.end(), members.begin(), members.end());
                    mOnEvent(std::move(call));
                });
    }
    return listener.binder;
}

void FrameworkClient::send(uint32_t code, const sp<IBinder>& binder, uint32_t uid) {
    Parcel data;
    Parcel reply;
    startRequest(data);
    data.writeStrongBinder(binder);
    call(code, data, &reply, uid);
}

void FrameworkClient::perform(const Listen& listen) {
    if (mListeners[listen.id].dead) {
        mListeners.erase(listen.id);  // who died comes back as a new binder
    }
    const sp<IBinder> binder = listener(listen.id);
    mListeners[listen.id].uid = listen.uid;
    send(kRegister, binder, listen.uid);
}

void FrameworkClient::perform(const Unlisten& unlisten) {
    const sp<IBinder> binder = listener(unlisten.id);
    send(kUnregister, binder, mListeners[unlisten.id].uid);
}

void FrameworkClient::perform(const ListenerDies& dies) {
    const sp<FrameworkListener> binder = listener(dies.id);
    mListeners[dies.id].dead = true;
    binder->die();
}

void FrameworkClient::perform(const ListenerFails& fails) {
    listener(fails.id)->failNext(fails.code, fails.count);
}

void FrameworkClient::perform(const Transact& transact) {
    Parcel data;
    Parcel reply;
    startRequest(data);
    for (const Argument& argument : transact.args) {
        std::visit(
                common::Overloaded{[&](const ListenerArgument& argued) {
                                       data.writeStrongBinder(listener(argued.id));
                                   },
                                   [&](const auto& plain) { client::writeArgument(plain, data); }},
                argument);
    }
    const status_t status = call(transact.code, data, &reply, transact.uid);
    if (status == OK && !transact.reply) {
        return;
    }
    Json::Value values(Json::arrayValue);
    if (status == OK) {
        for (const ReplyType type : *transact.reply) {
            values.append(client::readReplyValue(reply, type));
        }
    }
    mOnEvent({0, "reply", {{"code", transact.code}, {"status", status}, {"values", values}}});
}

void FrameworkClient::perform(const Dump& dump) {
    // Not a pipe: in one process nobody would empty it while a long dump fills it.
    const android::base::unique_fd file(memfd_create("dump", MFD_CLOEXEC));
    const sp<IBinder> kelvo = service();
    if (kelvo == nullptr || file.get() < 0) {
        return;
    }
    android::Vector<String16> arguments;
    for (const std::string& argument : dump.args) {
        arguments.add(toString16(argument));
    }
    {
        const android::LocalCall caller(dump.uid, getpid());
        kelvo->dump(file.get(), arguments);
    }
    lseek(file.get(), 0, SEEK_SET);
    mOnEvent({0, "dump", {{"text", readAll(file.get())}}});
}

}  // namespace sim
