#include "client/StatusListener.h"

#include <utils/String8.h>

#include <algorithm>

#include "common/JsonText.h"

namespace client {

namespace {

using android::OK;
using android::Parcel;
using android::status_t;

/** One kind of call. */
struct CallKind {
    uint32_t code;
    const char* event;
    std::vector<const char*> numbers;  // names of its int32 arguments
    bool hasDetail;                    // a JSON text follows
    bool answersException;
};

const std::vector<CallKind>& callKinds() {
    static const std::vector<CallKind> kKinds = {
            {3, "notify_thermal_status", {"status"}, false, false},
            {4, "notify_thermal_broadcast", {"level", "temp"}, false, true},
            {5, "notify_ambient_thermal", {"temp"}, false, true},
            {6, "notify_component_heat", {"level", "temp"}, true, true},
    };
    return kKinds;
}

const CallKind* findKind(uint32_t code) {
    const std::vector<CallKind>& kinds = callKinds();
    const auto found = std::find_if(kinds.begin(), kinds.end(),
                                    [code](const CallKind& kind) { return kind.code == code; });
    return found != kinds.end() ? &*found : nullptr;
}

/** The report as JSON, or as the text that it should not be. */
Json::Value parseDetail(const android::String16& text) {
    const std::string utf8 = android::String8(text).string();
    return common::parseJson(utf8).value_or(utf8);
}

}  // namespace

const android::String16& listenerDescriptor() {
    static const android::String16 kDescriptor("com.zenta.thermalcontrol.IThermalStatusListener");
    return kDescriptor;
}

const std::map<std::string, std::vector<std::string>>& listenerEvents() {
    static const auto kEvents = [] {
        std::map<std::string, std::vector<std::string>> events;
        for (const CallKind& kind : callKinds()) {
            events[kind.event] = {kind.numbers.begin(), kind.numbers.end()};
        }
        return events;
    }();
    return kEvents;
}

status_t readListenerCall(android::IBinder& listener, uint32_t code, const Parcel& data,
                          ListenerCall& call) {
    const CallKind* kind = findKind(code);
    if (kind == nullptr) {
        return android::UNKNOWN_TRANSACTION;
    }
    if (!data.checkInterface(&listener)) {
        return android::PERMISSION_DENIED;
    }
    call = {kind->event, {}, kind->answersException};
    for (const char* name : kind->numbers) {
        call.members.emplace_back(name, data.readInt32());
    }
    if (kind->hasDetail) {
        call.members.emplace_back("detail", parseDetail(data.readString16()));
    }
    return OK;
}

void answerListenerCall(const ListenerCall& call, Parcel* reply) {
    if (call.answersException && reply != nullptr) {
        reply->writeNoException();
    }
}

const android::String16& StatusListener::getInterfaceDescriptor() const {
    return listenerDescriptor();
}

status_t StatusListener::onTransact(uint32_t code, const Parcel& data, Parcel* reply,
                                    uint32_t flags) {
    ListenerCall call;
    const status_t status = readListenerCall(*this, code, data, call);
    if (status == android::UNKNOWN_TRANSACTION) {
        return BBinder::onTransact(code, data, reply, flags);
    }
    if (status == OK) {
        mOnCall(call.event, call.members);
        answerListenerCall(call, reply);
    }
    return status;
}

}  // namespace client
