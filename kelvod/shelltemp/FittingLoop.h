#pragma once

#include <cstdint>
#include <string>

#include "base/PeriodicLoop.h"
#include "shelltemp/TsensorCollector.h"

namespace kelvo {

/**
 * The thread "st-fitting" and its cadence: a fitting step each interval, which scene texts change;
 * with tsensor collection a tick each second and a fitting step on every fifth. Thread-safe.
 */
class FittingLoop : private PeriodicLoop::Client {
  public:
    /** What the loop makes, on its thread and without its mutex. */
    class Steps {
      public:
        virtual ~Steps() = default;
        /** Returns once the other steps may be made. */
        virtual void waitUntilReady() = 0;
        /** Once, before the first fitting step. */
        virtual void readTempForFirstTime() = 0;
        virtual void fittingStep() = 0;
    };

    /** Both outlive the loop, which runs until the process ends. */
    FittingLoop(Steps* steps, TsensorCollector* tsensors);

    /** Reads the configured interval and starts the thread; a failure is logged. Once. */
    void start();
    /** Sets the cadence for a scene text and wakes the loop. The interval (s) that holds then. */
    int32_t enterScene(const std::string& scene);
    /** Monotonic second of the last "SCREEN:ON", -1 before the first. */
    int32_t screenOnTime();

  private:
    static constexpr int32_t kDefaultInterval = 5;  // s
    static constexpr int32_t kTicksPerFitting = 5;  // while tsensors are sampled

    void onThreadStart() override;
    bool runPass() override;
    bool onWoken(int32_t intervalSeconds) override;
    bool onTimeout() override { return true; }
    void onThreadEnd(PeriodicLoop::End end, int error) override;
    void tick();

    Steps* const mSteps;
    TsensorCollector* const mTsensors;
    int32_t mConfiguredInterval = kDefaultInterval;  // s, constant once started

    PeriodicLoop mLoop;  // its mutex guards the interval and mScreenOnTime
    int32_t mScreenOnTime GUARDED_BY(mLoop.mutex()) = -1;  // monotonic, s

    // The loop's thread only.
    bool mPrimed = false;
    int32_t mTicks = kTicksPerFitting;  // since the last fitting; full, so that the first tick fits
};

}  // namespace kelvo
