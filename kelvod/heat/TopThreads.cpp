#include "heat/TopThreads.h"

#include <algorithm>

#include "base/Log.h"
#include "base/Numeric.h"

namespace kelvo {

namespace {

constexpr size_t kTopThreads = 8;
constexpr int32_t kTooLong = 1800;  // s among the top
constexpr int64_t kSamplingMs = 5000;

}  // namespace

void TopThreads::add(const std::vector<PidTidPower>& threads) {
    for (const PidTidPower& thread : threads) {
        if (!mThreadTable.wouldBeWeakest(thread.power) ||
            mThreadTable.find(thread.tid) != nullptr) {
            mThreadTable.update(thread.tid, [&](PidTidPower& entry) { entry = thread; });
        }
        // A newcomer enters in any case: its power is only the beginning of its sum.
        mPidPower.update(thread.pid, [&](int64_t& sum) { sum += thread.power; });
    }
    mSampleCount = wrappingAdd(mSampleCount, 1);
}

void TopThreads::getTopCpuPower(int32_t now, std::set<int>& powers,
                                std::map<int, PidTidPower>& top) {
    if (mThreadTable.entries().empty()) {
        return;
    }
    for (const auto& [tid, thread] : mThreadTable.entries()) {
        if (top.size() >= kTopThreads) {
            const int32_t weakest = *powers.begin();
            if (thread.power <= weakest) {
                continue;
            }
            top.erase(std::ranges::find_if(
                    top, [weakest](const auto& entry) { return entry.second.power == weakest; }));
            // Equal powers share the element that goes here: the others of this power stay at the
            // top from now on, and a stronger one is compared with instead.
            powers.erase(weakest);
        }
        PidTidPower& entry = top[tid] = thread;
        entry.keepTime = wrappingSub(now, mPeriodStart);
        powers.insert(thread.power);
    }
    mPeriodStart = now;
}

void TopThreads::shareOf(PidTidPower& thread, float coefficient) const {
    const int64_t* const power = mPidPower.find(thread.pid);
    if (power == nullptr) {
        return;
    }
    const int64_t average = mSampleCount != 0 ? *power / mSampleCount : 0;
    if (average != 0) {
        thread.powerToThermal = static_cast<float>(average) / static_cast<float>(kSamplingMs) /
                                coefficient / static_cast<float>(mSampleCount);
    }
    KLOGD("cpuComp topprocess pid:%d, thread name:%s, pidpower:%ld, pidToShellTemp:%f, "
          "sampleCount:%d\n",
          thread.pid, thread.name, *power, static_cast<double>(thread.powerToThermal),
          mSampleCount);
}

void TopThreads::accumulate(PidTidPower& thread) {
    const auto before = mLongKeepTable.find(thread.tid);
    if (before != mLongKeepTable.end()) {
        thread.power = wrappingAdd(thread.power, before->second.power);
        thread.keepTime = wrappingAdd(thread.keepTime, before->second.keepTime);
    }
    KLOGD("cpuComp longkeeptid: pid:%d tid:%d, keepTime:%d, power:%d, tidname:%s\n", thread.pid,
          thread.tid, thread.keepTime, thread.power, thread.name);
    if (thread.keepTime > kTooLong) {
        KLOGE("cpuComp maybe except thread:%s, tid:%d, keepTime:%d", thread.name, thread.tid,
              thread.keepTime);
        mExceptThreads[std::to_string(thread.pid) + "_" + std::to_string(thread.tid)] = thread;
    }
}

int TopThreads::getTopKeepPowerTid(int32_t now, float coefficient) {
    std::set<int> powers;
    std::map<int, PidTidPower> top;
    getTopCpuPower(now, powers, top);
    if (top.empty() || powers.empty()) {
        return -1;
    }
    for (auto& [tid, thread] : top) {
        KLOGD("cpuComp currentTopTid pid:%d tid:%d,keepTime:%d, power:%d, tidname:%s\n", thread.pid,
              thread.tid, thread.keepTime, thread.power, thread.name);
        shareOf(thread, coefficient);
        accumulate(thread);
    }
    mLongKeepTable = std::move(top);
    mSampleCount = 0;
    mPidPower.clear();
    mThreadTable.clear();
    return 0;
}

std::vector<PidTidPower> TopThreads::byShare() const {
    std::vector<PidTidPower> threads;
    for (const auto& [tid, thread] : mLongKeepTable) {
        threads.push_back(thread);
    }
    std::ranges::stable_sort(threads, std::ranges::greater{}, &PidTidPower::powerToThermal);
    return threads;
}

}  // namespace kelvo
