#include "shelltemp/DailyRecords.h"

#include "base/Log.h"
#include "base/Time.h"
#include "base/TimeUtils.h"
#include "core/DataCollector.h"

namespace kelvo {

namespace {

constexpr int64_t kCollectPeriod = 3600;  // s

}  // namespace

void DailyRecords::start(const std::string& day) {
    mRecords.clear();
    mDay = day;
    mStartStamp = getTimestamp();
    mStartTime = monotonicNanos();
}

bool DailyRecords::hourIsFull() const {
    const int64_t elapsed = (monotonicNanos() - mStartTime) / kNanosPerSecond;
    return elapsed >= 1 && elapsed % kCollectPeriod == 0;
}

void DailyRecords::handOver(Json::Value frame, const ZoneTable& zones,
                            const ModelNames& models) const {
    if (mRecords.empty()) {
        return;
    }
    frame["timestamp"] = getTimestamp();
    frame["starttime"] = mStartStamp;
    frame["duration"] = static_cast<Json::Int64>((monotonicNanos() - mStartTime) / kNanosPerSecond);
    frame["temp"] = mRecords.zonesAsJson(zones);
    frame["fitting-delta"] = mRecords.deltasAsJson(models);
    KLOGD("DC:\n%s : %s", mDay.c_str(), frame.toStyledString().c_str());
    DataCollector::getInstance().setData(DC_SHELL_TEMP, mDay, frame);
}

}  // namespace kelvo
