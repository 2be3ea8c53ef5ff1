#include <cmath>
#include <utility>

#include "Property.h"
#include "sim/plant/Plant.h"

namespace {

using namespace sim;

constexpr double kRounding = 1e-9;  // of what is added up
constexpr int kSeconds = 300;

/** Up to six bodies, each joined to one before it, the first to the air, and some more links. */
PlantParams anyNetwork(Draws& draws, double lowestStart) {
    PlantParams params;
    params.stepMs = 1000;  // so that every step can be looked at
    const double air = draws.real(-10, 40);
    params.ambient = {{{0, air}}};
    for (int32_t i = 0, count = draws.in(1, 6); i < count; ++i) {
        params.nodes.push_back(
                {"n" + std::to_string(i), draws.real(10, 100), air + draws.real(lowestStart, 60)});
        for (int32_t links = draws.oneIn(3) ? 2 : 1; links > 0; --links) {
            params.links.push_back({i, draws.in(kAmbientNode, i - 1), draws.real(1, 20)});
        }
        params.sources.push_back({"s", i, {{{0, 0}, {kSeconds, 0}}}, true});
    }
    return params;
}

void addPower(PlantParams& params, Draws& draws) {
    for (auto& source : params.sources) {
        source.power.points.back().value += draws.real(0, 3);
    }
}

/** Lets the plant run, and looks at every second of it. */
template <typename Holds>
bool everySecond(Plant& plant, Holds holds) {
    bool good = true;
    for (int64_t time = 1; good && time <= kSeconds; ++time) {
        plant.advanceTo(time);
        good = holds(time);
    }
    return good;
}

std::vector<double> temps(const Plant& plant) {
    std::vector<double> result(plant.params().nodes.size());
    std::ranges::generate(result, [&, i = size_t{0}]() mutable { return plant.nodeTemp(i++); });
    return result;
}

PROPERTY(PlantProperties, morePowerIsNowhereCooler, 100) {
    PlantParams params = anyNetwork(draws, -60);
    addPower(params, draws);
    Plant less(params);
    addPower(params, draws);
    Plant more(params);
    return everySecond(more, [&](int64_t time) {
        less.advanceTo(time);
        return std::ranges::equal(temps(more), temps(less),
                                  [](double a, double b) { return a >= b - kRounding; });
    });
}

PROPERTY(PlantProperties, withoutPowerTheWarmestCoolsAndNothingGetsColderThanTheAir, 100) {
    const PlantParams params = anyNetwork(draws, 0);
    Plant plant(params);
    double warmest = std::ranges::max(temps(plant));
    return everySecond(plant, [&](int64_t) {
        const auto [low, high] = std::ranges::minmax(temps(plant));
        const double before = std::exchange(warmest, high);
        return high <= before + kRounding && low >= plant.ambient() - kRounding;
    });
}

/** J that the bodies hold above 0 °C. */
double heldIn(const Plant& plant) {
    double joules = 0;
    for (size_t i = 0; i < plant.params().nodes.size(); ++i) {
        joules += plant.params().nodes[i].capacity * plant.nodeTemp(i);
    }
    return joules;
}

/** J that the next second brings: power, less what goes to the air. */
double nextSecond(const Plant& plant) {
    double joules = 0;
    for (size_t i = 0; i < plant.params().sources.size(); ++i) {
        joules += plant.sourcePower(i);
    }
    for (const auto& link : plant.params().links) {
        const double excess = plant.nodeTemp(static_cast<size_t>(link.from)) - plant.ambient();
        joules -= link.to == kAmbientNode ? excess / link.resistance : 0;
    }
    return joules;
}

PROPERTY(PlantProperties, everyJouleIsHeldOrGivenToTheAir, 100) {
    PlantParams params = anyNetwork(draws, -60);
    addPower(params, draws);
    Plant plant(params);
    double expected = heldIn(plant) + nextSecond(plant);
    return everySecond(plant, [&](int64_t) {
        const double held = heldIn(plant);
        const double due = std::exchange(expected, expected + nextSecond(plant));
        return std::abs(held - due) <= kRounding * (1 + std::abs(due));
    });
}

}  // namespace
