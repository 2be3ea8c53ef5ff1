#include "sim/Plant.h"

#include <algorithm>

#include "core/Numeric.h"

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

double valueAt(const Profile& profile, double time) {
    const auto& points = profile.points;
    const auto next = std::ranges::upper_bound(points, time, {}, &Profile::Point::time);
    if (next == points.begin()) {
        return next->value;
    }
    const auto last = next - 1;
    if (next == points.end()) {
        return last->value;
    }
    return last->value +
           (next->value - last->value) * (time - last->time) / (next->time - last->time);
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

Plant::Plant(PlantParams params) : mParams(std::move(params)), mFlows(mParams.nodes.size()) {
    for (const auto& node : mParams.nodes) {
        mTemps.push_back(node.start);
        mStepPerCapacity.push_back(mParams.stepMs / 1000.0 / node.capacity);
    }
    for (const auto& link : mParams.links) {
        mConductances.push_back(1 / link.resistance);
    }
}

void Plant::advanceTo(int64_t seconds) {
    while (mTimeMs < seconds * 1000) {
        step();
    }
}

void Plant::step() {
    std::ranges::fill(mFlows, 0.0);
    for (size_t i = 0; i < mParams.sources.size(); ++i) {
        mFlows[static_cast<size_t>(mParams.sources[i].node)] += sourcePower(i);
    }
    const double air = ambient();
    const auto temp = [&](int32_t node) {
        return node == kAmbientNode ? air : mTemps[static_cast<size_t>(node)];
    };
    for (size_t i = 0; i < mParams.links.size(); ++i) {
        const auto& link = mParams.links[i];
        const double flow = (temp(link.from) - temp(link.to)) * mConductances[i];
        if (link.from != kAmbientNode) {
            mFlows[static_cast<size_t>(link.from)] -= flow;
        }
        if (link.to != kAmbientNode) {
            mFlows[static_cast<size_t>(link.to)] += flow;
        }
    }
    for (size_t i = 0; i < mTemps.size(); ++i) {
        mTemps[i] += mFlows[i] * mStepPerCapacity[i];
    }
    mTimeMs += mParams.stepMs;
}

int32_t Plant::zoneTemp(size_t zone) const {
    const auto& params = mParams.zones[zone];
    const double exact = mTemps[static_cast<size_t>(params.node)] * 1000 + params.offset +
                         noise(params.index, time(), params.noise);
    return kelvo::saturatingInt32(exact) / params.resolution * params.resolution;
}

std::optional<int32_t> Plant::zoneTemp(std::string_view type) const {
    const auto found = std::ranges::find(mParams.zones, type, &PlantParams::Zone::type);
    if (found == mParams.zones.end()) {
        return std::nullopt;
    }
    return zoneTemp(static_cast<size_t>(found - mParams.zones.begin()));
}

std::optional<double> Plant::nodeTemp(std::string_view name) const {
    const auto found = std::ranges::find(mParams.nodes, name, &PlantParams::Node::name);
    if (found == mParams.nodes.end()) {
        return std::nullopt;
    }
    return nodeTemp(static_cast<size_t>(found - mParams.nodes.begin()));
}

double Plant::ambient() const {
    return valueAt(mParams.ambient, now());
}

double Plant::sourcePower(size_t source) const {
    return valueAt(mParams.sources[source].power, now());
}

double Plant::totalPower() const {
    double total = 0;
    for (size_t i = 0; i < mParams.sources.size(); ++i) {
        total += sourcePower(i);
    }
    return total;
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
