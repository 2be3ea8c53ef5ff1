#include "ambient/AmbientEstimate.h"

#include <gtest/gtest.h>

#include <limits>

using kelvo::AmbientSamples;
using kelvo::EstimateWindow;
using kelvo::SteadySums;

namespace {

constexpr int32_t kMost = std::numeric_limits<int32_t>::max();
constexpr int32_t kLeast = std::numeric_limits<int32_t>::min();

/** Rounds from the oldest on: temperature and power count up, the current is given. */
AmbientSamples rounds(int32_t count, int32_t current = 0) {
    AmbientSamples samples;
    for (int32_t i = 0; i < count; ++i) {
        samples.add({1000 * i, 10 * i, current});
    }
    return samples;
}

}  // namespace

TEST(AmbientSamplesTest, isFullWithTwelveRoundsUntilItIsCleared) {
    EXPECT_FALSE(rounds(11).full());
    AmbientSamples samples = rounds(13);
    EXPECT_TRUE(samples.full());
    samples.clear();
    EXPECT_FALSE(samples.full());
    EXPECT_EQ(samples.powerDiff(), 0);
}

TEST(AmbientSamplesTest, averagesElevenSlotsOverTwelve) {
    const std::pair<int32_t, int32_t> kCases[] = {
            {-2728, 2500},      {-2729, 2501},                       // 11/12 of it, cut
            {12, -11},          {0, 0},        {kLeast, 178956970},  // the sum wraps
            {kMost, -178956969}};
    for (const auto& [current, mean] : kCases) {
        EXPECT_EQ(rounds(12, current).chargeMean(), mean) << current;
    }
    AmbientSamples samples = rounds(11);
    samples.add({0, 0, -1200000});
    EXPECT_EQ(samples.chargeMean(), 0) << "the twelfth slot does not count";
}

TEST(AmbientSamplesTest, comparesTheNewestSixRoundsWithTheOlderSixAlsoAcrossTheEnd) {
    for (const int32_t count : {12, 15, 23, 24}) {
        const AmbientSamples samples = rounds(count);
        EXPECT_EQ(samples.powerDiff(), 60) << count;
        const auto pairs = samples.pairs();
        for (size_t age = 0; age < pairs.size(); ++age) {
            const int32_t round = count - 1 - static_cast<int32_t>(age);
            EXPECT_EQ(pairs[age].slot, round % 12) << count;
            EXPECT_EQ(pairs[age].newer.temp, 1000 * round) << count;
            EXPECT_EQ(pairs[age].slope, 200.0) << count;
            EXPECT_EQ(pairs[age].wrapped, round % 12 > (count - 1) % 12) << count;
        }
    }
}

TEST(SteadySumsTest, cutsTheSlopesAtEveryStep) {
    SteadySums sums;
    for (const double slope : {0.9, 0.9, 1.9, 0.9, -3.5}) {
        sums.add({.slot = 0, .wrapped = false, .slope = slope, .newer = {1000, -200, 0}});
    }
    EXPECT_EQ(sums.slope, -2) << "0, 0, 1, 1, -2";
    EXPECT_EQ(sums.temp, 5000);
    EXPECT_EQ(sums.power, -1000);
    kelvo::AmbientParams params;
    params.temp = 0.01;
    params.power = 0.1;
    params.tempSlope = 10;
    params.constant = 3.9;
    EXPECT_EQ(kelvo::ambientOf(sums, params), -10) << "(50 - 100 - 20) / 5 + 3.9, cut once";
}

TEST(EstimateWindowTest, averagesTheTenBetweenTheExtremes) {
    EstimateWindow window;
    for (int repeat = 0; repeat < 2; ++repeat) {
        for (int32_t i = 0; i < 11; ++i) {
            EXPECT_EQ(window.add(i == 4 ? 90 : 20 + i % 2), std::nullopt);
        }
        EXPECT_EQ(window.add(-60), 20) << "without 90 and -60: 20.5, cut";
        EXPECT_TRUE(window.empty());
    }
    window.add(20);
    window.clear();
    EXPECT_TRUE(window.empty());
}
