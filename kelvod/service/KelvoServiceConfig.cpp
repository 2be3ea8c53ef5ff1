// Configuration, version and big data.

#include <cutils/properties.h>

#include <vector>

#include "base/Log.h"
#include "base/Version.h"
#include "config/ConfigNames.h"
#include "config/KelvoConfig.h"
#include "core/DataCollector.h"
#include "core/KelvoMessages.h"
#include "core/MessageManager.h"
#include "service/KelvoService.h"
#include "service/ServiceCodes.h"
#include "thermalstatus/KelvoThermalStatus.h"

namespace kelvo {

namespace {

constexpr char kBigDataProperty[] = "persist.sys.kelvo.dc";
constexpr int kReloadDelay = 3000;  // ms

void writeList(android::Parcel& reply, const std::vector<int32_t>& list) {
    reply.writeInt32(static_cast<int32_t>(list.size()));
    reply.writeInt32Vector(list);
}

/** A list, when one follows; empty also when the request is too short for it. */
std::vector<int32_t> readList(const android::Parcel& data) {
    std::vector<int32_t> list;
    if (data.readInt32() == kListFollows && data.readInt32Vector(&list) != android::OK) {
        list.clear();
    }
    return list;
}

/** False when the collection of big data is switched off: then the header is all of the reply. */
bool writeBigData(android::Parcel& reply) {
    reply.writeNoException();
    if (property_get_int32(kBigDataProperty, 1) == 0) {
        KLOGD("kelvo DC disabled");
        return false;
    }
    const std::string text = DataCollector::getInstance().getData().toStyledString();
    reply.writeString16(android::String16(text.c_str(), text.size()));
    return true;
}

}  // namespace

void KelvoService::getThermalConfig(const Parcel&, Parcel& reply) {
    std::vector<int32_t> hold;
    std::vector<int32_t> holdDown;
    std::vector<int32_t> status;
    KelvoThermalStatus::getInstance().getConfig(hold, holdDown, status);
    KLOGE("thermalHold:%lu, thermalHoldDown:%lu, thermalStatus:%lu", hold.size(), holdDown.size(),
          status.size());
    reply.writeNoException();
    writeList(reply, hold);
    writeList(reply, holdDown);
    writeList(reply, status);
}

void KelvoService::setDynamicConfig(const Parcel& data, Parcel& reply) {
    std::vector<int32_t> hold = readList(data);
    std::vector<int32_t> holdDown = readList(data);
    std::vector<int32_t> status = readList(data);
    reply.writeInt32(KelvoThermalStatus::getInstance().dynamicConfig(hold, holdDown, status));
}

void KelvoService::getVersion(const Parcel&, Parcel& reply) {
    const std::string version = kBuildVersion;
    reply.writeNoException();
    reply.writeString16(android::String16(version.empty() ? "0.1" : version.c_str()));
}

void KelvoService::getBigData(const Parcel&, Parcel& reply) {
    if (writeBigData(reply)) {
        DataCollector::getInstance().reset(0);
    }
}

void KelvoService::peekBigData(const Parcel&, Parcel& reply) {
    writeBigData(reply);
}

void KelvoService::reloadConfig(const Parcel&, Parcel&) {
    MessageManager::getInstance().sendMessageDelayed(messages::reloadConfig(), kReloadDelay);
}

void KelvoService::getCpuLimitProcesses(const Parcel&, Parcel& reply) {
    Json::Value limits;
    if (KelvoConfig::getInstance().getConfig(&limits, {key::kCpuLimitProcess, key::kLimitInfo}) !=
        0) {
        reply.writeInt32(0);
        return;
    }
    std::vector<android::String16> names;
    for (const Json::Value& limit : limits.isArray() ? limits : Json::Value()) {
        if (limit.isString()) {
            KLOGD("cpulimit_process: %s", limit.asCString());
            names.emplace_back(limit.asCString());
        }
    }
    KLOGE("CPU_LIMIT_PROCEESES %s", limits.toStyledString().c_str());
    reply.writeInt32(static_cast<int32_t>(names.size()));
    if (!names.empty()) {
        reply.writeString16Vector(names);
    }
}

}  // namespace kelvo
