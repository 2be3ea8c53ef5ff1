#pragma once

#include <cstdint>
#include <limits>
#include <optional>
#include <vector>

#include "sim/plant/PlantParams.h"

namespace sim {

/** The value of a profile at a time in seconds. */
double valueAt(const Profile& profile, double time);

/** Follows a profile forward in time, which costs less than to look each value up. */
class ProfileFollower {
  public:
    /** The same as valueAt(). `time` never goes back, and the profile is always the same. */
    double at(const Profile& profile, double time);

  private:
    size_t mNext = 0;                                              // the first point after the time
    double mFlatUntil = -std::numeric_limits<double>::infinity();  // s; `mValue` holds before it
    double mValue = 0;
};

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

    double nodeTemp(size_t node) const { return mTemps[node]; }          // °C
    double ambient() const { return mTemps.back(); }                     // °C
    double sourcePower(size_t source) const { return mPowers[source]; }  // W
    /** mA out of the battery, below 0 while charging; none without a battery in the parameters. */
    std::optional<int32_t> batteryCurrent() const;

  private:
    /** A link; the ambient is the node behind the last. */
    struct Joint {
        size_t from;
        size_t to;
        double conductance;  // W/K
    };

    void step();
    void lookUp();
    double now() const { return static_cast<double>(mTimeMs) / 1000.0; }

    const PlantParams mParams;
    std::vector<Joint> mJoints;            // constant
    std::vector<double> mStepPerCapacity;  // K/W of each node in one step; constant
    int64_t mTimeMs = 0;
    std::vector<double> mTemps;   // °C of each node, then of the ambient
    std::vector<double> mFlows;   // W into each of them during a step
    std::vector<double> mPowers;  // W of each source
    std::vector<ProfileFollower> mPowersOverTime;
    ProfileFollower mAmbientOverTime;
};

}  // namespace sim
