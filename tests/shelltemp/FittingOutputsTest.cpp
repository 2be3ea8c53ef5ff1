#include "shelltemp/FittingOutputs.h"

#include <gtest/gtest.h>

#include "support/LogCapture.h"

using kelvo::FittingOutputs;
using kelvo::FittingTemps;

namespace {

/** One cycle at a monotonic second: the values as fitted, and as published. */
struct Cycle {
    int32_t time;
    FittingTemps fitted;
    FittingTemps published;
};

struct FittingOutputsTest : testing::Test {
    const FittingTemps& publish(FittingOutputs& outputs, const Cycle& cycle) {
        fit(outputs, cycle);
        outputs.endCycle();
        outputs.limit(screenOnTime, record);
        return outputs.temps();
    }
    static void fit(FittingOutputs& outputs, const Cycle& cycle) {
        outputs.beginCycle();
        for (const auto& [index, temp] : cycle.fitted) {
            outputs.set(index, temp, cycle.time);
        }
    }

    LogCapture log;
    kelvo::PassRecord record;
    int32_t screenOnTime = -1;
};

}  // namespace

TEST_F(FittingOutputsTest, capsAndLimits) {
    const std::pair<const char*, std::vector<Cycle>> cases[] = {
            {"the first cycle is its own cycle before", {{10, {{0, 40000}}, {{0, 40000}}}}},
            {"twice the fastest change of the last ones, which the limit itself enters",
             {{10, {{0, 40000}}, {{0, 40000}}},
              {15, {{0, 40500}}, {{0, 40500}}},
              {20, {{0, 44500}}, {{0, 41500}}},
              {25, {{0, 44500}}, {{0, 43500}}},
              {30, {{0, 44500}}, {{0, 44500}}}}},
            {"each index has a history of its own",
             {{10, {{0, 40000}, {1, 40000}}, {{0, 40000}, {1, 40000}}},
              {15, {{0, 41000}, {1, 40000}}, {{0, 41000}, {1, 40000}}},
              {20, {{0, 45000}, {1, 36000}}, {{0, 43000}, {1, 39375}}}}},
            {"a value that the cycle before lacks rises from 0, by the time since that cycle",
             {{10, {{0, 40000}}, {{0, 40000}}},
              {12, {{0, 40000}, {1, 30000}}, {{0, 40000}, {1, 250}}}}},
            {"two cycles within a second count as a second apart",
             {{10, {{0, 40000}}, {{0, 40000}}}, {10, {{0, 41000}}, {{0, 40125}}}}},
            {"no negative index is limited",
             {{10, {{-2, 40000}}, {{-2, 40000}}}, {15, {{-2, 60000}}, {{-2, 60000}}}}},
            {"-1 caps what lies more than 20 degrees above it, but no negative index",
             {{10,
               {{-2, 60000}, {-1, 30000}, {0, 50000}, {1, 50001}, {2, 20000}},
               {{-2, 60000}, {-1, 30000}, {0, 50000}, {1, 49876}, {2, 20000}}}}},
            {"a capped value may be raised again by the limiting",
             {{10, {{-1, 30000}, {0, 50000}}, {{-1, 30000}, {0, 50000}}},
              {15, {{-1, 30000}, {0, 50001}}, {{-1, 30000}, {0, 49375}}}}},
            {"without models nothing comes out", {{10, {}, {}}, {15, {}, {}}}},
    };
    for (const auto& [why, cycles] : cases) {
        FittingOutputs outputs;
        for (const Cycle& cycle : cycles) {
            EXPECT_EQ(publish(outputs, cycle), cycle.published) << why << ": " << cycle.time;
        }
    }
}

TEST_F(FittingOutputsTest, leavesTheFirstFiveSecondsAfterScreenOnAloneButCaps) {
    const std::pair<int32_t, int32_t> cases[] = {
            {20, 60000}, {15, 60000}, {14, 40625}, {-1, 40625}};
    for (const auto& [onTime, value] : cases) {
        FittingOutputs outputs;
        screenOnTime = -1;
        publish(outputs, {15, {{-1, 30000}, {0, 40000}, {1, 40000}}, {}});
        screenOnTime = onTime;
        const FittingTemps& temps =
                publish(outputs, {20, {{-1, 60000}, {0, 60000}, {1, 80001}}, {}});
        EXPECT_EQ(temps.at(0), value) << onTime;
        EXPECT_EQ(temps.at(1), value) << onTime << ": capped to 60000 before";
    }
    EXPECT_EQ(log.count("screen just turned on, ignore check 20:20"), 1u);
}

TEST_F(FittingOutputsTest, limitsAgainstACycleThatFailedAsFarAsItWent) {
    FittingOutputs outputs;
    publish(outputs, {10, {{0, 40000}, {1, 40000}}, {}});
    fit(outputs, {15, {{0, 44000}}, {}});  // a zone of model 1 failed: neither ended nor limited
    const FittingTemps& temps = publish(outputs, {20, {{0, 44100}, {1, 40000}}, {}});
    EXPECT_EQ(temps, (FittingTemps{{0, 44100}, {1, 625}}));
}

TEST_F(FittingOutputsTest, saysWhatItCapsAndLimits) {
    FittingOutputs outputs;
    publish(outputs, {10, {{-1, 30000}, {0, 40500}}, {}});
    publish(outputs, {15, {{-1, 30000}, {0, 50001}}, {}});
    std::vector<std::string> texts;
    for (const LogCapture::Line& line : log.lines()) {
        texts.push_back(line.text);
    }
    EXPECT_EQ(texts, (std::vector<std::string>{
                             "index:0, temp:50001",
                             "Shell temp was shaking 0: delta -2100 (40500->30000), smoothed -125 "
                             "(30000->39875)"}));
}
