// Callers on several threads; the thread sanitizer watches.

#include <aidl/vendor/zenta/hardware/performance/BnPerformance.h>
#include <android/binder_manager.h>
#include <binder_linux/LocalServiceManager.h>
#include <gtest/gtest.h>

#include <latch>
#include <thread>

#include "heat/CpuCompHeat.h"

namespace {

/** A performance service that answers when it is let. */
class HangingService : public aidl::vendor::zenta::hardware::performance::BnPerformance {
  public:
    ndk::ScopedAStatus readCpuTaskstats(std::string* out) override {
        mCalled.count_down();
        mReleased.wait();
        *out = "1\t1\t5000000\tx\n";
        return ndk::ScopedAStatus::ok();
    }
    void waitForCall() { mCalled.wait(); }
    void release() { mReleased.count_down(); }

  private:
    std::latch mCalled{1};
    std::latch mReleased{1};
};

}  // namespace

TEST(HeatConcurrencyTest, aHangingServiceHoldsUpNobodyButTheSampler) {
    android::installLocalServiceManager();
    const auto service = ndk::SharedRefBase::make<HangingService>();
    const std::string name = std::string(HangingService::descriptor) + "/default";
    ASSERT_EQ(AServiceManager_addService(service->asBinder().get(), name.c_str()), EX_NONE);
    CpuCompHeat cpu;
    cpu.processRawSample();  // arms
    std::thread sampler([&cpu] { cpu.processRawSample(); });
    service->waitForCall();
    EXPECT_EQ(cpu.getHeatContribution(), -1);
    EXPECT_EQ(cpu.getHeatInfo()->heat, -1);
    cpu.collectBigData(true);
    cpu.clearSamples();
    service->release();
    sampler.join();
}
