#include "links/QuorixModuleUsageCb.h"

#include <optional>
#include <utility>

#include "base/Log.h"
#include "links/UsageSum.h"

namespace kelvo {

using android::Mutex;
using android::binder::Status;
using com::zenta::thermal::ModuleUsage;

namespace {

constexpr int64_t kNoTime = -1;

template <typename Record>
UsageSum sumOf(const google::protobuf::RepeatedPtrField<Record>& records) {
    UsageSum sum;
    for (const Record& record : records) {
        sum.add(record.has_start() ? record.start() : kNoTime,
                record.has_end() ? record.end() : kNoTime, record.energy());
    }
    return sum;
}

/** The sum of the records, whose power is the figure; none, and no power, without records. */
template <typename Record>
std::optional<UsageSum> takePower(const google::protobuf::RepeatedPtrField<Record>& records,
                                  std::atomic<int32_t>& figure) {
    if (records.empty()) {
        figure = ModulePower::kNone;
        return std::nullopt;
    }
    const UsageSum sum = sumOf(records);
    figure = sum.power();
    return sum;
}

}  // namespace

QuorixModuleUsageCb::QuorixModuleUsageCb(Mutex& mutex, ModulePower& power)
      : mMutex(mutex), mPower(power) {
    KLOGD("QuorixModuleUsageCb construct");
}

Status QuorixModuleUsageCb::informModuleUsage(int32_t version, const std::vector<uint8_t>& data) {
    const Mutex::Autolock lock(mMutex);
    if (data.empty()) {
        KLOGE("qxManager: Pelko get data failed, aidl version: %ld", static_cast<long>(version));
        return Status::ok();
    }
    KLOGD("qxManager: Quorix call back success, data size is: %d", static_cast<int>(data.size()));
    if (!parseMessage(data)) {
        KLOGE("qxManager: parseFromArray ModuleUsage Fail !");
        return Status::ok();
    }
    parseCpuData();
    parseCellularData();
    parseWifiData();
    parseDisplayData();
    KLOGD("qxManager: Parse ModuleUsage DEBUG (CPU : %d, Wifi : %d, Cellular : %d, Dispaly : %d)",
          mPower.cpu.load(), mPower.wifi.load(), mPower.cellular.load(), mPower.display.load());
    return Status::ok();
}

Status QuorixModuleUsageCb::getTessilStats(int32_t, std::vector<uint8_t>*) {
    return Status::ok();
}

bool QuorixModuleUsageCb::parseMessage(const std::vector<uint8_t>& data) {
    // A new message each time: one that is parsed again keeps the memory of its largest report.
    ModuleUsage usage;
    if (!usage.ParseFromArray(data.data(), static_cast<int>(data.size()))) {
        return false;
    }
    mUsage = std::move(usage);
    return true;
}

void QuorixModuleUsageCb::parseCpuData() {
    if (const auto sum = takePower(mUsage.cpu(), mPower.cpu)) {
        KLOGD("qxManager: Parse CPU Data : duration sum : %lld, energySum: %lld",
              static_cast<long long>(sum->span()), static_cast<long long>(sum->energySum()));
    }
}

void QuorixModuleUsageCb::parseCellularData() {
    if (const auto sum = takePower(mUsage.cellular(), mPower.cellular)) {
        KLOGD("qxManager: Parse Cellular Data  : duration sum : %lld, energy sum: %lld",
              static_cast<long long>(sum->span()), static_cast<long long>(sum->energySum()));
    }
}

void QuorixModuleUsageCb::parseWifiData() {
    if (const auto sum = takePower(mUsage.wifi(), mPower.wifi)) {
        KLOGD("qxManager: Parse Wifi Data : duration sum : %lld, energy sum: %lld",
              static_cast<long long>(sum->span()), static_cast<long long>(sum->energySum()));
    }
}

void QuorixModuleUsageCb::parseDisplayData() {
    if (const auto sum = takePower(mUsage.display(), mPower.display)) {
        KLOGD("qxManager: Parse Display Data : duration sum : %lld, energy sum: %lld",
              static_cast<long long>(sum->span()), static_cast<long long>(sum->energySum()));
    }
}

}  // namespace kelvo
