#pragma once

#include <utils/Mutex.h>
#include <utils/Singleton.h>

#include <atomic>
#include <cstdint>
#include <limits>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "ambient/AmbientEstimate.h"

namespace kelvo {

/**
 * Estimates the temperature of the air around the phone (whole °C, what the configured coefficients
 * make of the samples) from a window of twelve rounds, and posts a change of 3 or more as message
 * code 12.
 *
 * Rounds and switches come from the fitting thread and the work thread, the getters from anywhere.
 * Lock order: the fitting engine's main mutex, then ours, then the configuration's or the looper's;
 * in construction the health listener's. Rounds come without the engine's, and services are asked
 * without any: one that hangs delays a round by a second, once.
 */
class AmbientTempWatcher : public android::Singleton<AmbientTempWatcher> {
  public:
    static constexpr int32_t kNoEstimate = std::numeric_limits<int32_t>::min();

    /** Takes a device temperature (m°C) and a power, both as the ambient models gave them. */
    void updateAmbientTemp(int temp, int power);
    /** Whether a sample taken now counts; clears the samples when the charging state says no. */
    bool checkAvailableStats();
    /** Takes the parameters of another ambient scene; an unknown name changes nothing. */
    void switchFittingParameter(const std::string& name);

    /** The estimate (°C), or kNoEstimate before the first one. Never blocks. */
    int getAmbientTemp() const { return mAmbientTemp; }
    /**
     * The estimate (°C) and the monotonic second of the latest round. False, with both left alone,
     * while the window is not full or there is no estimate. Never blocks.
     */
    bool getAmbientTempInfo(int& temp, int& time) const;

  private:
    friend class android::Singleton<AmbientTempWatcher>;
    AmbientTempWatcher();

    bool parseFittingParam(const std::string& name) REQUIRES(mMutex);
    bool getAmbientFittingParameter() REQUIRES(mMutex);
    bool getNewFittingParameter(const std::vector<std::string>& scenes) REQUIRES(mMutex);
    void useParameters(const std::string& name) REQUIRES(mMutex);
    bool isTimeContinuous() REQUIRES(mMutex);
    void updateSample(int temp, int power, int batteryCurrent) REQUIRES(mMutex);
    bool isChargeLow(double threshold) REQUIRES(mMutex);
    bool isPowerSteady(double threshold) REQUIRES(mMutex);
    void estimate(const AmbientParams& params) REQUIRES(mMutex);
    void publish(int32_t temp) REQUIRES(mMutex);
    void checkAmbientTempStatus() REQUIRES(mMutex);
    void clearRecord() REQUIRES(mMutex);

    const bool mIsOldAmbientProject;
    bool mParamsLoaded = false;  // constant after construction

    // Written under the mutex, read by anyone.
    std::atomic<int32_t> mAmbientTemp = kNoEstimate;
    std::atomic<int32_t> mLastRound = 0;  // monotonic, s
    std::atomic<bool> mFull = false;

    android::Mutex mMutex;                                            // guards what follows
    std::map<std::string, AmbientParams> mParams GUARDED_BY(mMutex);  // by scene
    std::optional<AmbientParams> mAmbientCoeffs GUARDED_BY(mMutex);   // those in force, if any
    uint32_t mSwitches GUARDED_BY(mMutex) = 0;                        // of the parameters
    AmbientSamples mSamples GUARDED_BY(mMutex);
    EstimateWindow mEstimates GUARDED_BY(mMutex);
    int32_t mLastTemp GUARDED_BY(mMutex) = kNoEstimate;  // as announced
    int64_t mLastUpdateSecond GUARDED_BY(mMutex) = -1;   // wall clock
};

}  // namespace kelvo
