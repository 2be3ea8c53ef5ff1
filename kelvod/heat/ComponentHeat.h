#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <memory>

#include "heat/ComponentType.h"
#include "heat/EnergySampleBuffer.h"
#include "heat/HeatInfo.h"

/**
 * A part of the phone that samples its power or temperature while monitoring runs, and converts the
 * samples to its contribution to the shell temperature.
 *
 * processRawSample() comes on the thread "comp-monitor" without a lock of the center's, and so does
 * askForFactors() on any; everything else comes under the center's component lock. Each component
 * guards what they share.
 */
class ComponentHeat {
  public:
    /** Takes a reading and pushes it; 0. */
    virtual int processRawSample() = 0;
    /** The present contribution (m°C); most components drop the samples it was computed from. */
    virtual int getHeatContribution() = 0;
    /** The contribution with the figures that explain it; never null. */
    virtual std::shared_ptr<HeatInfo> getHeatInfo() = 0;
    /** The same without the factors that another process is asked for. */
    virtual std::shared_ptr<HeatInfo> getOwnHeatInfo() { return getHeatInfo(); }
    /** Adds those factors to what getOwnHeatInfo() has just returned. */
    virtual void askForFactors(HeatInfo& info) { (void)info; }
    virtual ~ComponentHeat() = default;
    /** Hands statistics to the data collector and, with `reset`, starts them anew. */
    virtual void collectBigData(bool reset) { (void)reset; }

    /** Whether a sampling pass has come since monitoring started; see the components that arm. */
    bool isActive() const { return mActive; }
    void setActive(bool active) { mActive = active; }
    /** How the latest contribution came about; empty without a decision observer. */
    kelvo::HeatConversion lastConversion() const { return mSamples->lastConversion(); }
    /** At the end of monitoring: drops the samples and disarms the component. */
    void clearSamples() {
        mSamples->clear();
        mActive = false;
    }

  protected:
    explicit ComponentHeat(ComponentType type)
          : mType(type), mSamples(std::make_shared<EnergySampleBuffer>(kSampleCapacity)) {}

    const ComponentType mType;
    const std::shared_ptr<EnergySampleBuffer> mSamples;  // thread-safe in itself

    struct Figure {
        const char* name;
        int64_t value;
    };
    /** Pushes a sample; `source` and `figures` tell an observer what it was computed from. */
    void pushSample(const EnergySample& sample, const char* source,
                    std::initializer_list<Figure> figures = {});

    /** What the configuration has for this component; -1.0 for none, see HeatProcessCenter. */
    float configuredCoefficient() const;

    static constexpr char kUsageFeed[] = "usage feed";

  private:
    // Seven and a half minutes at the center's cadence of 5 s.
    static constexpr size_t kSampleCapacity = 90;

    // Set by the sampling thread, cleared by the one that stops monitoring.
    std::atomic<bool> mActive = false;
};
