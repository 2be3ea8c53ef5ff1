#pragma once

#include <utils/Condition.h>
#include <utils/Mutex.h>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

#include "heat/EnergySample.h"
#include "heat/HeatDecisions.h"

/**
 * The latest samples of a component, in a ring, and what is computed from them. Each operation
 * holds the buffer's lock for its whole run, but for getEnergyToTemp(). Thread-safe.
 */
class EnergySampleBuffer {
  public:
    explicit EnergySampleBuffer(size_t capacity);

    /** Takes `sample` as the newest, in place of the oldest when the ring is full. */
    void push(std::unique_ptr<EnergySample> sample);
    /** Drops all samples; the cached temperature stays. */
    void clear();

    /** Mean NTC temperature (m°C), truncated; -1 without samples. */
    int getAvgTemp() const;
    /**
     * Least-squares slope of the NTC temperature over time (m°C/s); -1.0 without samples or when
     * all have one time stamp.
     */
    double getSlopeOf() const;
    /**
     * Mean of the samples newer than the last conversion over `coefficient`: power to the share of
     * the shell temperature (m°C). -1 with no sample or a single one, 0 when none is new.
     */
    int getEnergyToTempCache(float coefficient) const;
    /**
     * With five samples or more converts them, drops them and remembers the result; returns what is
     * remembered, -1 before the first conversion. A sample pushed between conversion and dropping
     * is lost with the others.
     */
    int getEnergyToTemp(float coefficient);
    /**
     * How much the newest value differs from the more recent extreme of the last 300 s, limited by
     * interpolation to what changed after the monotonic second `sinceSecond`. 0 without samples.
     */
    int getAmbientCompToTemp(int sinceSecond) const;

    /** How the latest contribution came about; empty without a decision observer. */
    kelvo::HeatConversion lastConversion() const;

  private:
    /** The two most extreme samples of a stretch of time, and where they stand in the ring. */
    struct Extremes {
        size_t maxPos;
        size_t minPos;
    };

    size_t positionOf(size_t age) const REQUIRES(mLock);
    const EnergySample& sampleOf(size_t age) const REQUIRES(mLock) {
        return *mSamples[positionOf(age)];
    }
    bool isFull() const REQUIRES(mLock) { return mSamples.size() == mCapacity; }
    void dropAll() REQUIRES(mLock);
    int convertPartly(float coefficient) const REQUIRES(mLock);
    int convertFull(float coefficient) const REQUIRES(mLock);
    size_t sumNew(size_t count, float* sum) const REQUIRES(mLock);
    void noteMethod(kelvo::HeatConversion::Method method, float coefficient) const REQUIRES(mLock);
    void noteSample(const EnergySample& sample) const REQUIRES(mLock);
    int32_t noteResult(int32_t result) const REQUIRES(mLock);
    Extremes findExtremes(int32_t since) const REQUIRES(mLock);

    const size_t mCapacity;
    // Signalled by each push; nothing in the daemon waits for it.
    android::Condition mNotEmpty;

    mutable android::Mutex mLock;  // guards all members below; a leaf
    // Grows up to the capacity; then positions are overwritten.
    std::vector<std::unique_ptr<EnergySample>> mSamples GUARDED_BY(mLock);
    int64_t mIndex GUARDED_BY(mLock) = -1;       // position of the newest sample
    int32_t mCachedTemp GUARDED_BY(mLock) = -1;  // m°C, of the last conversion
    int32_t mCacheTime GUARDED_BY(mLock) = -1;   // monotonic second of the last conversion
    mutable kelvo::HeatConversion mConversion GUARDED_BY(mLock);  // while observed
};
