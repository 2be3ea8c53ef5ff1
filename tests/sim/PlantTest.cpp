#include "PlantNames.h"

#include <gtest/gtest.h>

#include <cmath>
#include <set>

#include "sim/tree/PlantLoad.h"

namespace {

using sim::kAmbientNode;
using sim::PlantParams;

PlantParams::Source source(int32_t node, sim::Profile power) {
    return {"s" + std::to_string(node), node, std::move(power), true};
}

/** A die on a board on a shell in still air of 25 °C: seconds, then minutes. */
PlantParams phone(double watts) {
    PlantParams params;
    params.ambient = {{{0, 25}}};
    params.nodes = {{"die", 1, 25}, {"board", 30, 25}, {"shell", 80, 25}};
    params.links = {{0, 1, 4}, {1, 2, 2}, {2, kAmbientNode, 5}};
    params.sources = {source(0, {{{0, watts}}})};
    params.zones = {{0, "die", 0, 0, 1, 0}, {1, "shell", 2, 1500, 100, 0}};
    return params;
}

TEST(Profile, isLinearBetweenItsPointsAndHeldOutside) {
    const sim::Profile profile{{{10, 1}, {20, 3}, {20, 5}, {30, 5}}};
    const std::pair<double, double> values[] = {{0, 1},  {10, 1}, {15, 2}, {19.5, 2.9},
                                                {20, 5}, {25, 5}, {99, 5}};
    for (const auto& [time, value] : values) {
        EXPECT_DOUBLE_EQ(sim::valueAt(profile, time), value) << time;
    }
}

TEST(Plant, settlesAtTheAnalyticTemperaturesOverTheAmbient) {
    PlantParams params = phone(3);
    params.ambient = {{{0, 25}, {1000, 5}}};
    sim::Plant plant(params);
    plant.advanceTo(20000);
    EXPECT_DOUBLE_EQ(plant.ambient(), 5);
    EXPECT_NEAR(nodeTemp(plant, "shell"), 5 + 3 * 5, 1e-6);
    EXPECT_NEAR(nodeTemp(plant, "board"), 5 + 3 * 7, 1e-6);
    EXPECT_NEAR(nodeTemp(plant, "die"), 5 + 3 * 11, 1e-6);
}

TEST(Plant, followsTheExponentialOfOneNode) {
    PlantParams params = phone(0);
    params.nodes = {{"n", 20, 45}};
    params.links = {{kAmbientNode, 0, 5}};
    params.zones.clear();
    sim::Plant plant(params);
    plant.advanceTo(100);  // one time constant
    EXPECT_NEAR(plant.nodeTemp(0), 25 + 20 / std::exp(1.0), 0.01);
}

TEST(Plant, reachesTheSameStateInOneStrideOrMany) {
    sim::Plant stride(phone(3));
    sim::Plant steps(phone(3));
    stride.advanceTo(60);
    for (int64_t t = 0; t <= 60; ++t) {
        steps.advanceTo(t);
    }
    steps.advanceTo(10);  // the past changes nothing
    EXPECT_EQ(nodeTemp(stride, "die"), nodeTemp(steps, "die"));
    EXPECT_EQ(steps.time(), 60);
}

TEST(Plant, showsZonesWithOffsetAndResolution) {
    PlantParams params = phone(0);
    params.nodes[2].start = 33.3339;
    params.nodes[0].start = -0.0015;
    const sim::Plant plant(params);
    EXPECT_EQ(zoneTemp(plant, "shell"), 34800);
    EXPECT_EQ(zoneTemp(plant, "die"), -1);
}

TEST(Plant, repeatsItsNoiseWithinItsBounds) {
    PlantParams params = phone(0);
    params.zones[0].noise = 50;
    sim::Plant first(params);
    sim::Plant second(params);
    std::set<int32_t> seen;
    for (int64_t t = 1; t <= 200; ++t) {
        first.advanceTo(t);
        second.advanceTo(t);
        EXPECT_EQ(zoneTemp(first, "die"), zoneTemp(second, "die"));
        seen.insert(*zoneTemp(first, "die"));
    }
    EXPECT_NEAR(*seen.begin(), 24955, 5);
    EXPECT_NEAR(*seen.rbegin(), 25045, 5);
}

TEST(Plant, chargesAndDrainsTheBattery) {
    PlantParams params = phone(2);
    EXPECT_EQ(sim::Plant(params).batteryCurrent(), std::nullopt);
    params.battery = {4, {{{0, 0}, {10, 0}, {10, 6}}}};
    params.sources.push_back({"loss", 1, {{{0, 1}}}, false});
    sim::Plant plant(params);
    EXPECT_EQ(plant.batteryCurrent(), 500);
    plant.advanceTo(10);
    EXPECT_EQ(plant.batteryCurrent(), -1000);
}

TEST(PlantLoad, showsTheDisplaysPowerAsItsLevel) {
    const std::pair<double, int32_t> levels[] = {{0, 0},   {0.2, 0}, {0.2001, 1}, {0.6, 50},
                                                 {1, 100}, {2, 100}, {0.504, 38}};
    EXPECT_FALSE(sim::backlight(sim::Plant(phone(1))));
    for (const auto& [watts, level] : levels) {
        PlantParams params = phone(watts);
        params.backlight = PlantParams::Backlight{0, 0.2, 1, 100};
        const sim::Plant plant(params);
        EXPECT_EQ(sim::backlight(plant)->level, level) << watts;
        EXPECT_EQ(sim::backlightNodes(plant, true).back().text, std::to_string(level));
        EXPECT_EQ(sim::backlightNodes(plant, false).size(), 0U);
        EXPECT_EQ(sim::panelAnswers(plant, false)->level, level);
        EXPECT_FALSE(sim::panelAnswers(plant, true));
    }
}

TEST(Plant, findsTheNodeThatWouldSwing) {
    PlantParams params = phone(1);
    EXPECT_EQ(sim::unstableNode(params), -1);
    params.nodes[0].capacity = 0.0251;  // step / (R C) is just below 1
    EXPECT_EQ(sim::unstableNode(params), -1);
    params.nodes[0].capacity = 0.025;
    EXPECT_EQ(sim::unstableNode(params), 0);
}

}  // namespace
