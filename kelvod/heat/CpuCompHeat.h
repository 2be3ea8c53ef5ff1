#pragma once

#include <utils/Mutex.h>

#include <android/binder_auto_utils.h>

#include <memory>
#include <string>

#include "heat/ComponentHeat.h"
#include "heat/TopThreads.h"
#include "links/PatientCaller.h"

namespace aidl::vendor::zenta::hardware::performance {
class IPerformance;
}

/**
 * Heat of the processor, from the task statistics of the vendor's performance service. Samples are
 * mW. Also names the threads that contribute most and finds those that do so for too long.
 *
 * A service that is absent, late or answers nothing gives samples of 0. Thread-safe.
 */
class CpuCompHeat : public virtual ComponentHeat {
  public:
    CpuCompHeat();

    /** The first call after a start of the monitor begins a period of observation instead. */
    int processRawSample() override;
    int getHeatContribution() override;
    /** Key factors: the three threads with the largest shares (m°C) and "Power" (mW). */
    std::shared_ptr<HeatInfo> getHeatInfo() override;
    /** Hands over the threads that stayed at the top for too long. */
    void collectBigData(bool reset) override;

  private:
    using Performance = aidl::vendor::zenta::hardware::performance::IPerformance;

    int getPerfService();
    int connect();
    static void onPerfServiceDied(void* component);
    std::shared_ptr<Performance> perfService();
    static std::string readTaskStats(Performance& service);
    int getCpuPower();
    float coefficient() REQUIRES(mThreadsLock);

    const ndk::ScopedAIBinder_DeathRecipient mDeathRecipient;
    kelvo::PatientCaller mCaller{"the performance service"};
    static android::Mutex sPerfLock;  // guards the connection; a leaf
    std::shared_ptr<Performance> mPerfService GUARDED_BY(sPerfLock);

    // Guards the threads and the coefficient; taken before the buffer's lock and the collector's.
    android::Mutex mThreadsLock;
    kelvo::TopThreads mThreads GUARDED_BY(mThreadsLock);
    float mCoefficient GUARDED_BY(mThreadsLock) = 0.0F;  // 0.0 until the center was asked
};
