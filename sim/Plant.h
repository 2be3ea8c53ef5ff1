#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "sim/PlantParams.h"

namespace sim {

/** The value of a profile at a time in seconds. */
double valueAt(const Profile& profile, double time);

/** Whether the explicit steps of this network settle; -1, or the first node that would swing. */
int32_t unstableNode(const PlantParams& params);

/**
 * The thermal network of the phone: heat capacities joined by thermal resistances, heated by
 * sources. Integrated in explicit steps of fixed length with + - * / alone, so that every machine
 * computes the same temperatures. Not thread-safe.
 */
class Plant {
  public:
    /** At t = 0. `params` must have passed unstableNode(). */
    explicit Plant(PlantParams params);

    /** Moves on to this phone time; earlier times do nothing. */
    void advanceTo(int64_t seconds);
    int64_t time() const { return mTimeMs / 1000; }  // s

    const PlantParams& params() const { return mParams; }

    /** What the sensor of a zone shows, m°C. `zone` counts in params().zones. */
    int32_t zoneTemp(size_t zone) const;
    /** The same by type; none for a type that the plant does not drive. */
    std::optional<int32_t> zoneTemp(std::string_view type) const;

    double nodeTemp(size_t node) const { return mTemps[node]; }  // °C
    std::optional<double> nodeTemp(std::string_view name) const;
    double ambient() const;                   // °C
    double sourcePower(size_t source) const;  // W
    double totalPower() const;                // W, of all sources
    /** mA out of the battery, below 0 while charging; none without a battery in the parameters. */
    std::optional<int32_t> batteryCurrent() const;

  private:
    void step();
    double now() const { return static_cast<double>(mTimeMs) / 1000.0; }

    const PlantParams mParams;
    std::vector<double> mConductances;     // W/K of each link; constant
    std::vector<double> mStepPerCapacity;  // K/W of each node in one step; constant
    int64_t mTimeMs = 0;
    std::vector<double> mTemps;  // °C
    std::vector<double> mFlows;  // W into each node during a step
};

}  // namespace sim
