#include "sim/plant/Plant.h"

#include <algorithm>

#include "base/Numeric.h"

namespace sim {

namespace {

/** A well-mixed 64-bit figure from a counter (the finaliser of a splittable generator). */
uint64_t mixed(uint64_t value) {
    value += 0x9e3779b97f4a7c15U;
    value = (value ^ (value >> 30U)) * 0xbf58476d1ce4e5b9U;
    value = (value ^ (value >> 27U)) * 0x94d049bb133111ebU;
    return value ^ (value >> 31U);
}

/** -amplitude to amplitude, the same for a zone and second on every run. */
int32_t noise(int32_t zone, int64_t second, int32_t amplitude) {
    if (amplitude == 0) {
        return 0;
    }
    const auto seed = (static_cast<uint64_t>(zone) << 40U) + static_cast<uint64_t>(second);
    const auto width = 2 * static_cast<uint64_t>(amplitude) + 1;
    return static_cast<int32_t>(mixed(seed) % width) - amplitude;
}

}  // namespace

double ProfileFollower::at(const Profile& profile, double time) {
    if (time < mFlatUntil) {
        return mValue;
    }
    const auto& points = profile.points;
    while (mNext < points.size() && points[mNext].time <= time) {
        ++mNext;
    }
    const Profile::Point& last = points[mNext == 0 ? 0 : mNext - 1];
    if (mNext == points.size()) {
        mFlatUntil = std::numeric_limits<double>::infinity();
        return mValue = last.value;
    }
    const Profile::Point& next = points[mNext];
    if (mNext == 0 || next.value == last.value) {
        mFlatUntil = next.time;
        return mValue = last.value;
    }
    return last.value + (next.value - last.value) * (time - last.time) / (next.time - last.time);
}

double valueAt(const Profile& profile, double time) {
    return ProfileFollower().at(profile, time);
}

int32_t unstableNode(const PlantParams& params) {
    std::vector<double> conductance(params.nodes.size(), 0.0);  // W/K
    for (const auto& link : params.links) {
        for (const int32_t node : {link.from, link.to}) {
            if (node != kAmbientNode) {
                conductance[static_cast<size_t>(node)] += 1 / link.resistance;
            }
        }
    }
    const double step = params.stepMs / 1000.0;
    for (size_t i = 0; i < conductance.size(); ++i) {
        // Below 1 a step never carries a node past the mean of its neighbours.
        if (step * conductance[i] / params.nodes[i].capacity >= 1) {
            return static_cast<int32_t>(i);
        }
    }
    return -1;
}

Plant::Plant(PlantParams params)
      : mParams(std::move(params)),
        mTemps(mParams.nodes.size() + 1),
        mFlows(mTemps.size()),
        mPowers(mParams.sources.size()),
        mPowersOverTime(mParams.sources.size()) {
    for (size_t i = 0; i < mParams.nodes.size(); ++i) {
        mTemps[i] = mParams.nodes[i].start;
        mStepPerCapacity.push_back(mParams.stepMs / 1000.0 / mParams.nodes[i].capacity);
    }
    const auto place = [this](int32_t node) {
        return node == kAmbientNode ? mParams.nodes.size() : static_cast<size_t>(node);
    };
    for (const auto& link : mParams.links) {
        mJoints.push_back({place(link.from), place(link.to), 1 / link.resistance});
    }
    lookUp();
}

void Plant::advanceTo(int64_t seconds) {
    while (mTimeMs < seconds * 1000) {
        step();
    }
}

/** What the profiles say of this time. */
void Plant::lookUp() {
    for (size_t i = 0; i < mPowers.size(); ++i) {
        mPowers[i] = mPowersOverTime[i].at(mParams.sources[i].power, now());
    }
    mTemps.back() = mAmbientOverTime.at(mParams.ambient, now());
}

void Plant::step() {
    std::ranges::fill(mFlows, 0.0);
    for (size_t i = 0; i < mPowers.size(); ++i) {
        mFlows[static_cast<size_t>(mParams.sources[i].node)] += mPowers[i];
    }
    for (const Joint& joint : mJoints) {
        const double flow = (mTemps[joint.from] - mTemps[joint.to]) * joint.conductance;
        mFlows[joint.from] -= flow;
        mFlows[joint.to] += flow;
    }
    for (size_t i = 0; i < mStepPerCapacity.size(); ++i) {
        mTemps[i] += mFlows[i] * mStepPerCapacity[i];
    }
    mTimeMs += mParams.stepMs;
    lookUp();
}

int32_t Plant::zoneTemp(size_t zone) const {
    const auto& params = mParams.zones[zone];
    const double exact = mTemps[static_cast<size_t>(params.node)] * 1000 + params.offset +
                         noise(params.index, time(), params.noise);
    return kelvo::saturatingInt32(exact) / params.resolution * params.resolution;
}

std::optional<int32_t> Plant::batteryCurrent() const {
    if (!mParams.battery) {
        return std::nullopt;
    }
    double watts = -valueAt(mParams.battery->charge, now());
    for (size_t i = 0; i < mParams.sources.size(); ++i) {
        if (mParams.sources[i].drains) {
            watts += sourcePower(i);
        }
    }
    return kelvo::saturatingInt32(watts * 1000 / mParams.battery->voltage);
}

}  // namespace sim
