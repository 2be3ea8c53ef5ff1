#include "heat/CpuCompHeat.h"

#include <aidl/vendor/zenta/hardware/performance/IPerformance.h>
#include <android/binder_manager.h>

#include <memory>
#include <string>
#include <utility>

#include "base/Log.h"
#include "base/Numeric.h"
#include "base/Time.h"
#include "base/TimeUtils.h"
#include "core/DataCollector.h"
#include "heat/ComponentType.h"

using android::Mutex;
using kelvo::PidTidPower;

namespace {

// The service counts energy over the sampling period; over 5000 ms that makes mW.
constexpr int64_t kSamplingMs = 5000;
constexpr size_t kReportedThreads = 3;

int64_t sumOf(const std::vector<PidTidPower>& threads) {
    int64_t sum = 0;
    for (const PidTidPower& thread : threads) {
        sum += thread.power;
    }
    return sum;
}

}  // namespace

Mutex CpuCompHeat::sPerfLock;

CpuCompHeat::CpuCompHeat()
      : ComponentHeat(CPU), mDeathRecipient(AIBinder_DeathRecipient_new(onPerfServiceDied)) {
    getPerfService();
}

int CpuCompHeat::getPerfService() {
    return mCaller.ask(-1, [this] { return connect(); });
}

int CpuCompHeat::connect() {
    const std::string instance = std::string(Performance::descriptor) + "/default";
    // Not getService(), which would wait seconds for a service that is not there.
    const ndk::SpAIBinder binder(AServiceManager_checkService(instance.c_str()));
    if (binder.get() == nullptr) {
        KLOGE("cpuComp get perf service failed");
        return -1;
    }
    KLOGD("cpuComp get perf service success.");
    {
        Mutex::Autolock lock(sPerfLock);
        mPerfService = Performance::fromBinder(binder);
    }
    if (AIBinder_linkToDeath(binder.get(), mDeathRecipient.get(), this) != STATUS_OK) {
        onPerfServiceDied(this);  // no notice of it would come any more
        return -1;
    }
    return 0;
}

void CpuCompHeat::onPerfServiceDied(void* component) {
    KLOGE("cpuComp perf service died, will try to reconnect.");
    std::shared_ptr<Performance> dropped;  // given up after the lock
    Mutex::Autolock lock(sPerfLock);
    dropped = std::move(static_cast<CpuCompHeat*>(component)->mPerfService);
}

std::shared_ptr<CpuCompHeat::Performance> CpuCompHeat::perfService() {
    Mutex::Autolock lock(sPerfLock);
    return mPerfService;
}

/** Asks the service; empty when it fails. */
std::string CpuCompHeat::readTaskStats(Performance& service) {
    std::string text;
    return service.readCpuTaskstats(&text).isOk() ? text : "";
}

int CpuCompHeat::getCpuPower() {
    const std::shared_ptr<Performance> service = perfService();
    if (service == nullptr) {
        // The connection, if it succeeds, serves the next sample.
        getPerfService();
        KLOGE("cpuComp PerformanceInterface is null");
        return 0;
    }
    const std::string text =
            mCaller.ask(std::string(), [service] { return readTaskStats(*service); });
    if (text.empty()) {
        KLOGE("cpuComp readCpuTaskstats return empty");
        return 0;
    }
    KLOGD("cpuComp readCpuTaskstats length: %lu\n", text.size());
    bool complete = false;
    const std::vector<PidTidPower> threads = kelvo::parseTaskStats(text, &complete);
    if (!complete) {
        KLOGD("cpuComp parse result failed!");
    }
    const auto power = static_cast<int32_t>(sumOf(threads) / kSamplingMs);
    {
        Mutex::Autolock lock(mThreadsLock);
        mThreads.add(threads);
    }
    KLOGE("cpuComp totalPower=%dmW", power);
    return power;
}

int CpuCompHeat::processRawSample() {
    if (!isActive()) {
        Mutex::Autolock lock(mThreadsLock);
        mThreads.startPeriod(kelvo::monotonicSeconds());
        setActive(true);
        return 0;
    }
    const int32_t power = getCpuPower();
    pushSample({CPU, static_cast<float>(power), kelvo::monotonicSeconds()}, "task statistics");
    KLOGE("cpuComp processRawSample energy=%d", power);
    return 0;
}

// A missing coefficient (-1.0) is kept, and asked for no more.
float CpuCompHeat::coefficient() {
    if (mCoefficient == 0.0F) {
        mCoefficient = configuredCoefficient();
        KLOGD("cpuComp getHeatContribution start:%f", static_cast<double>(mCoefficient));
    }
    return mCoefficient;
}

int CpuCompHeat::getHeatContribution() {
    Mutex::Autolock lock(mThreadsLock);
    const float perDegree = coefficient();
    const int32_t result = mSamples->getEnergyToTemp(perDegree);
    KLOGE("cpuComp getHeatContribution mCoeffs=%lf, result=%d", static_cast<double>(perDegree),
          result);
    return result;
}

std::shared_ptr<HeatInfo> CpuCompHeat::getHeatInfo() {
    Mutex::Autolock lock(mThreadsLock);
    const float perDegree = coefficient();
    const int32_t result = mSamples->getEnergyToTemp(perDegree);
    KLOGD("cpuComp getHeatInfo mCoeffs=%lf, result=%d", static_cast<double>(perDegree), result);
    if (mThreads.getTopKeepPowerTid(kelvo::monotonicSeconds(), perDegree) == -1 || result < 1) {
        return HeatInfo::withoutKeyFactors(result);
    }
    std::map<std::string, int> factors;
    std::vector<PidTidPower> threads = mThreads.byShare();
    threads.resize(std::min(threads.size(), kReportedThreads));
    for (const PidTidPower& thread : threads) {
        KLOGE("cpuComp cpuinfo thread:%s, power:%d, powerToThermal:%f", thread.name, thread.power,
              static_cast<double>(thread.powerToThermal));
        factors.emplace(thread.name, kelvo::saturatingInt32(thread.powerToThermal));
    }
    factors["Power"] = kelvo::saturatingInt32(perDegree * static_cast<float>(result));
    return std::make_shared<HeatInfo>(result, factors);
}

void CpuCompHeat::collectBigData(bool reset) {
    Mutex::Autolock lock(mThreadsLock);
    if (mThreads.exceptThreads().empty()) {
        return;
    }
    KLOGE("CpuCompHeat::collectBigData");
    for (const auto& [key, thread] : mThreads.exceptThreads()) {
        Json::Value record(Json::objectValue);
        record["pid_tid"] = key;
        record["localDay"] = kelvo::getLocalDay();
        record["keepTime"] = thread.keepTime;
        KLOGE("cpuComp collectBigData:%s", record.toStyledString().c_str());
        kelvo::DataCollector::getInstance().setData(kelvo::DC_EXCEPT_THREAD, thread.name, record);
    }
    if (reset) {
        mThreads.clearExceptThreads();
    }
}
