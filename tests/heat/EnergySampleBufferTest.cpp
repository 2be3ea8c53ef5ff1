#include "heat/EnergySampleBuffer.h"

#include <gtest/gtest.h>

#include <cmath>

#include "sim/virtual/VirtualTime.h"
#include "support/LogCapture.h"

namespace {

constexpr int32_t kNow = 1000;  // monotonic s

struct Reading {
    float value;
    int time;
    int ntc = 0;
};

struct EnergySampleBufferTest : testing::Test {
    EnergySampleBufferTest() { sim::VirtualTime::start(int64_t{kNow} * 1000, 0); }

    void push(const std::vector<Reading>& readings, float unit = 1) {
        for (const Reading& r : readings) {
            buffer.push(std::make_unique<EnergySample>(0, r.value * unit, r.time, r.ntc));
        }
    }
    void pushMany(int count, int firstTime) {
        for (int i = 0; i < count; ++i) {
            push({{static_cast<float>(i), firstTime + i, i}});
        }
    }

    LogCapture log;
    EnergySampleBuffer buffer{90};
};

}  // namespace

TEST_F(EnergySampleBufferTest, convertsFromTheFifthSampleOnAndForgetsThem) {
    push({{10, 1}, {20, 2}, {30, 3}, {40, 4}});
    EXPECT_EQ(buffer.getEnergyToTemp(2.0F), -1) << "four are not enough";
    push({{50, 5}});
    EXPECT_EQ(buffer.getEnergyToTemp(2.0F), 17) << "the oldest is not counted";
    push({{90, 1001}, {90, 1002}, {90, 1003}, {90, 1004}});
    EXPECT_EQ(buffer.getEnergyToTemp(2.0F), 17) << "the last result stands";
    push({{90, 1005}});
    EXPECT_EQ(buffer.getEnergyToTemp(2.0F), 45) << "nothing of before is left";
    buffer.clear();
    EXPECT_EQ(buffer.getEnergyToTemp(2.0F), 45) << "clearing leaves the result";
}

TEST_F(EnergySampleBufferTest, averagesWhatIsNewerThanTheLastConversion) {
    EXPECT_EQ(buffer.getEnergyToTempCache(1.0F), -1) << "empty";
    push({{7, 1}});
    EXPECT_EQ(buffer.getEnergyToTempCache(1.0F), -1) << "a single one";
    push({{1, 1}, {1, 1}, {1, 1}, {1, 1}});
    buffer.getEnergyToTemp(1.0F);  // at second 1000
    push({{10, 999}, {20, 1000}, {31, 1001}, {41, 1002}});
    EXPECT_EQ(buffer.getEnergyToTempCache(1.0F), 36) << "two of four";
    EXPECT_EQ(buffer.getEnergyToTempCache(-1.0F), -36) << "an unknown coefficient";
    EXPECT_EQ(buffer.getEnergyToTempCache(0.0F), 2147483647) << "saturates";
    push({{50, 1000}});
    EXPECT_EQ(buffer.getEnergyToTempCache(1.0F), 0) << "the newest is not newer";
    pushMany(90, 900);
    EXPECT_EQ(buffer.getEnergyToTempCache(1.0F), 0) << "nor in a full ring";
    push({{2, 1001, 0}});
    EXPECT_EQ(buffer.getEnergyToTempCache(1.0F), 2) << "one of ninety";
}

TEST_F(EnergySampleBufferTest, overwritesTheOldestOfNinety) {
    pushMany(90, 1);
    EXPECT_EQ(buffer.getEnergyToTempCache(1.0F), 44) << "the oldest counts once the ring is full";
    EXPECT_EQ(buffer.getAvgTemp(), 44);
    push({{1000, 91, 1000}});
    EXPECT_EQ(buffer.getAvgTemp(), (89 * 90 / 2 + 1000) / 90) << "0 went, 1000 came";
    EXPECT_EQ(buffer.getEnergyToTempCache(1.0F), (89 * 90 / 2 + 1000) / 90);
    pushMany(90, 2000);
    EXPECT_EQ(buffer.getAvgTemp(), 44) << "all overwritten once more";
}

TEST_F(EnergySampleBufferTest, slopeIsThatOfTheLeastSquares) {
    EXPECT_EQ(buffer.getSlopeOf(), -1.0);
    EXPECT_EQ(buffer.getAvgTemp(), -1);
    EXPECT_TRUE(log.has("energySamplebuf getSlopeOf, buffer is empty"));
    EXPECT_TRUE(log.has("energySamplebuf getAvgTemp, buffer is empty"));
    push({{0, 50, 5}, {0, 50, 9}});
    EXPECT_EQ(buffer.getSlopeOf(), -1.0) << "one time stamp";
    buffer.clear();
    push({{0, 10, 100}, {0, 15, 200}, {0, 20, 300}});
    EXPECT_EQ(buffer.getSlopeOf(), 20.0);
    buffer.clear();
    // The mean second, 2.5 after the oldest, is rounded to 2: it enters the squares.
    push({{0, 10, 0}, {0, 12, 0}, {0, 13, 0}, {0, 15, 4}});
    EXPECT_EQ(buffer.getSlopeOf(), 10.0 / 14.0);
    buffer.clear();
    pushMany(89, 0);
    push({{0, 89, 90}});
    // Full: counted from the newest, -44.5 rounds to -44, which is 45 from the oldest.
    double covariance = 0;
    double squares = 0;
    const double mean = (88 * 89 / 2 + 90) / 90.0;
    for (int i = 0; i < 90; ++i) {
        covariance += ((i < 89 ? i : 90) - mean) * (i - 45);
        squares += (i - 45) * (i - 45);
    }
    EXPECT_NEAR(buffer.getSlopeOf(), covariance / squares, 1e-12);
}

TEST_F(EnergySampleBufferTest, tellsHowTheAmbientChanged) {
    // readings (°C), since, change (m°C), why
    const std::tuple<std::vector<Reading>, int, int, const char*> rows[] = {
            {{}, 0, 0, "empty"},
            {{{25, 990}}, -2147483647 - 1, 0, "one"},
            {{{25, 900}, {25, 990}}, 0, 0, "constant"},
            {{{20, 900}, {26, 990}}, 800, 0, "the newest is the later extreme"},
            {{{20, 800}, {26, 900}, {25, 990}}, 800, -1000, "from the later extreme"},
            {{{26, 800}, {20, 900}, {25, 990}}, 800, 5000, "which may be the lower"},
            {{{30, 699}, {20, 800}, {25, 900}, {24, 990}}, 0, -1000, "older than 300 s"},
            {{{30, 700}, {24, 990}}, 0, 0, "exactly 300 s old counts: falls from it to now"},
            {{{20, 800}, {26, 900}, {25, 990}}, 900, -1000, "all of it since then"},
            {{{20, 800}, {26, 900}, {25, 990}}, 945, -500, "half of it since then"},
            {{{20, 800}, {26, 900}, {26, 950}, {25, 990}}, 970, -500, "of two equal the newer"},
            {{{25, 990}, {26, 990}}, 990, 0, "no time between"},
            {{{20, 400}, {26, 500}}, 100, 0, "all too old"},
    };
    for (const auto& [readings, since, change, why] : rows) {
        buffer.clear();
        push(readings, 1000);
        EXPECT_EQ(buffer.getAmbientCompToTemp(since), change) << why;
    }
}

TEST_F(EnergySampleBufferTest, holdsExtremesWithoutOverflow) {
    push({{3e9F, 990, 2147483647}, {-3e9F, 995, -2147483647 - 1}, {NAN, 999, 0}});
    push({{3e9F, -2147483647 - 1}, {3e9F, 2147483647}});
    EXPECT_EQ(buffer.getAvgTemp(), 0);
    EXPECT_TRUE(std::isfinite(buffer.getSlopeOf()));
    buffer.getAmbientCompToTemp(2147483647);
    EXPECT_EQ(buffer.getEnergyToTemp(1e-30F), 2147483647);
}
