#include "core/DataCollector.h"

#include "base/Log.h"
#include "base/Time.h"

ANDROID_SINGLETON_STATIC_INSTANCE(kelvo::DataCollector)

namespace kelvo {

namespace {

constexpr nsecs_t kNanosPerDay = 24 * 3600 * kNanosPerSecond;

const char* typeKey(DcType type) {
    switch (type) {
        case DC_PKG:
            return "pkg";
        case DC_THERMAL:
            return "thermal";
        case DC_SHELL_TEMP:
            return "shelltemp";
        case DC_PKG_CURRENT:
            return "pkgcurrent";
        case DC_HEAT_SOURCE:
            return "heatsource";
        case DC_HEAT_LEVEL_SOURCE:
            return "heatlevelsource";
        case DC_EXCEPT_THREAD:
            return "exceptthread";
        case DC_TSENSOR_THERMAL:
            return "tsensorthermal";
    }
    return "unknown";
}

Json::Value& asObject(Json::Value& value) {
    if (!value.isObject()) {
        value = Json::Value(Json::objectValue);
    }
    return value;
}

}  // namespace

int DataCollector::setData(DcType type, const std::string& key, const std::string& field,
                           const std::string& value) {
    android::Mutex::Autolock lock(mMutex);
    getRequiredKey(type, key, field) = value;
    return 0;
}

int DataCollector::setData(DcType type, const std::string& key, const Json::Value& value) {
    android::Mutex::Autolock lock(mMutex);
    getRequiredKey(type, key) = value;
    return 0;
}

std::string DataCollector::asJson() const {
    android::Mutex::Autolock lock(mMutex);
    return mRoot.toStyledString();
}

Json::Value DataCollector::getData() const {
    android::Mutex::Autolock lock(mMutex);
    return mRoot;
}

void DataCollector::reset(int minDays) {
    android::Mutex::Autolock lock(mMutex);
    const auto nowDay = static_cast<int32_t>(wallClockNanos() / kNanosPerDay);
    if (nowDay - mLastResetDay >= minDays) {
        for (const std::string& name : mRoot.getMemberNames()) {
            mRoot[name] = Json::Value();
        }
        mLastResetDay = nowDay;
    }
    KLOGD("DataCollector reset nowDay=%d, mLastResetDay=%d", nowDay, mLastResetDay);
}

Json::Value& DataCollector::getRequiredKey(DcType type, const std::string& key,
                                           const std::string& field) {
    return getRequiredKey(type, key)[field];
}

Json::Value& DataCollector::getRequiredKey(DcType type, const std::string& key) {
    return asObject(asObject(mRoot[typeKey(type)])[key]);
}

}  // namespace kelvo
