#include "sim/tree/PlantLoad.h"

#include <gtest/gtest.h>

namespace {

sim::PlantParams phone(double watts) {
    sim::PlantParams params;
    params.ambient = {{{0, 25}}};
    params.nodes = {{"die", 1, 25}};
    params.sources = {{"s", 0, {{{0, watts}}}, true}};
    params.threads = {{7, 70, "a b", 0, 0.25}, {8, 80, "c", 0, 0.5}};
    params.gpu = {0, {{300, 1}, {600, 2}}};
    return params;
}

}  // namespace

TEST(PlantLoad, givesThreadsTheirShareOfFiveSeconds) {
    EXPECT_EQ(sim::taskStatistics(sim::Plant(phone(2))),
              "7\t70\t2500000\ta b\n8\t80\t5000000\tc\n");
    EXPECT_EQ(sim::taskStatistics(sim::Plant(phone(-2))), "7\t70\t0\ta b\n8\t80\t0\tc\n");
}

TEST(PlantLoad, choosesTheLowestClockThatLeavesRoom) {
    // watts, load, clock
    const std::tuple<double, const char*, const char*> rows[] = {
            {-1, "0", "300"},    {0, "0", "300"},    {0.5, "50", "300"}, {0.9, "90", "300"},
            {0.91, "46", "600"}, {1.9, "95", "600"}, {99, "100", "600"},
    };
    for (const auto& [watts, load, clock] : rows) {
        const sim::Plant plant(phone(watts));
        const auto qcom = sim::gpuNodes(plant, true);
        ASSERT_EQ(qcom.size(), 2U);
        EXPECT_EQ(*qcom[0].text, load) << watts;
        EXPECT_EQ(*qcom[1].text, clock + std::string("000000"));
        const auto mtk = sim::gpuNodes(plant, false);
        EXPECT_EQ(mtk[0].text->find(load + std::string(" ")), 0U) << *mtk[0].text;
        EXPECT_EQ(*mtk[1].text, clock + std::string(" 0"));
    }
    sim::PlantParams none = phone(1);
    none.gpu.reset();
    EXPECT_TRUE(sim::gpuNodes(sim::Plant(none), true).empty());
}
