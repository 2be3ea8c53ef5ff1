#include "shelltemp/TsensorHistogram.h"

#include <gtest/gtest.h>

using kelvo::TsensorState;
using Bands = std::vector<int32_t>;

namespace {

struct Histogram {
    TsensorState state;
    Bands counts = Bands(kelvo::kTsensorBands);
    Bands times = Bands(kelvo::kTsensorBands);
};

Histogram countAll(const std::vector<int32_t>& samples) {
    Histogram histogram;
    for (const int32_t sample : samples) {
        kelvo::countTsensorSample(sample, histogram.state, histogram.counts, histogram.times);
    }
    return histogram;
}

}  // namespace

TEST(TsensorHistogramTest, countsSamplesByBandAndEpisodesByPeak) {
    // samples, counts, times, why
    const std::tuple<std::vector<int32_t>, Bands, Bands, const char*> cases[] = {
            {{40000, 55000, 72000, 48000}, {0, 0, 0, 1, 0, 0}, {1, 2, 0, 1, 0, 0}, "an episode"},
            {{50001, 60000, 99999}, {0, 0, 0, 0, 0, 0}, {0, 1, 1, 0, 0, 1}, "band limits"},
            {{100001}, {0, 0, 0, 0, 0, 1}, {0, 0, 0, 0, 0, 1}, "the top band"},
            {{100000}, {0, 0, 0, 0, 0, 0}, {0, 0, 0, 0, 0, 1}, "times index 6 is clamped"},
            {{55000, 30000}, {0, 1, 0, 0, 0, 0}, {1, 1, 0, 0, 0, 0}, "times index -1 is clamped"},
            {{105000, 48000}, {0, 0, 0, 0, 0, 2}, {0, 1, 0, 0, 0, 1}, "counts index 6 is clamped"},
            {{60000, 40001}, {0, 0, 1, 0, 0, 0}, {0, 1, 1, 0, 0, 0}, "just short of a band"},
            {{50000}, {1, 0, 0, 0, 0, 0}, {0, 1, 0, 0, 0, 0}, "50000 opens and ends an episode"},
            {{55000, 40000, 40000}, {0, 1, 0, 0, 0, 0}, {2, 1, 0, 0, 0, 0}, "ends once"},
    };
    for (const auto& [samples, counts, times, why] : cases) {
        const Histogram histogram = countAll(samples);
        EXPECT_EQ(histogram.counts, counts) << why;
        EXPECT_EQ(histogram.times, times) << why;
    }
}
