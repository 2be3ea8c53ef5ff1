#include "sim/FrameworkListener.h"

#include <binder/Parcel.h>
#include <json/reader.h>
#include <utils/String8.h>

#include <algorithm>

namespace sim {

namespace {

using android::OK;
using android::Parcel;
using android::sp;
using android::status_t;

/** One kind of call: what a replay calls it, and its arguments. */
struct CallKind {
    uint32_t code;
    const char* event;
    std::vector<const char*> numbers;  // names of its int32 arguments
    bool hasDetail;                    // a JSON text follows
    bool answersException;
};

const CallKind* findKind(uint32_t code) {
    static const std::vector<CallKind> kinds = {
            {3, "notify_thermal_status", {"status"}, false, false},
            {4, "notify_thermal_broadcast", {"level", "temp"}, false, true},
            {5, "notify_ambient_thermal", {"temp"}, false, true},
            {6, "notify_component_heat", {"level", "temp"}, true, true},
    };
    const auto found = std::find_if(kinds.begin(), kinds.end(),
                                    [code](const CallKind& kind) { return kind.code == code; });
    return found != kinds.end() ? &*found : nullptr;
}

/** The report as JSON, or as the text that it should not be. */
Json::Value parseDetail(const android::String16& text) {
    const std::string utf8 = android::String8(text).string();
    const std::unique_ptr<Json::CharReader> reader(Json::CharReaderBuilder().newCharReader());
    Json::Value detail;
    const bool parsed = reader->parse(utf8.data(), utf8.data() + utf8.size(), &detail, nullptr);
    return parsed ? detail : Json::Value(utf8);
}

}  // namespace

void FrameworkListener::failNext(uint32_t code, int32_t count) {
    android::Mutex::Autolock lock(mMutex);
    mFailures[code] = count;
}

const android::String16& FrameworkListener::getInterfaceDescriptor() const {
    static const android::String16 kDescriptor("com.zenta.thermalcontrol.IThermalStatusListener");
    return kDescriptor;
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
    const CallKind* kind = findKind(code);
    if (kind == nullptr) {
        return BBinder::onTransact(code, data, reply, flags);
    }
    if (!isBinderAlive()) {
        return android::DEAD_OBJECT;
    }
    if (!data.checkInterface(this)) {
        return android::PERMISSION_DENIED;
    }
    Members members;
    for (const char* name : kind->numbers) {
        members.emplace_back(name, data.readInt32());
    }
    if (kind->hasDetail) {
        members.emplace_back("detail", parseDetail(data.readString16()));
    }
    mOnCall(kind->event, members);
    if (takeFailure(code)) {
        return android::FAILED_TRANSACTION;
    }
    if (kind->answersException && reply != nullptr) {
        reply->writeNoException();
    }
    return OK;
}

}  // namespace sim
