#include "shelltemp/SpecifiedZones.h"

#include "sim/virtual/VirtualTime.h"
#include "support/EngineTest.h"

using kelvo::SpecifiedZones;

namespace {

struct SpecifiedZonesTest : EngineTest {
    SpecifiedZonesTest() {
        addZone("cpu", 40000);
        addZone("gpu", 41000);
        buildPhone();
    }

    SpecifiedZones zones;
    std::vector<int> temps;
};

}  // namespace

TEST_F(SpecifiedZonesTest, readsTheZonesAtMostOnceInTwentySeconds) {
    zones.configure({{{1, "gpu"}, {0, "cpu"}}, std::nullopt});
    ASSERT_EQ(zones.getTemps(temps), 0);
    EXPECT_EQ(temps, (std::vector<int>{41000, 40000}));
    const std::pair<int64_t, int32_t> cases[] = {{5000, 41000}, {19999, 41000}, {20000, 45000}};
    phone().tree().setZoneTemp(1, 45000);
    for (const auto& [timeMs, temp] : cases) {
        sim::VirtualTime::advanceTo(timeMs);
        std::vector<int> now;
        EXPECT_EQ(zones.getTemps(now), 0);
        EXPECT_EQ(now.front(), temp) << timeMs;
    }
}

TEST_F(SpecifiedZonesTest, readsAtOnceAgainAfterAFailure) {
    zones.configure({{{0, "cpu"}, {1, "gpu"}}, std::nullopt});
    phone().tree().setZoneTemp(1, std::nullopt);
    EXPECT_EQ(zones.getTemps(temps), -1);
    EXPECT_EQ(temps, (std::vector<int>{40000})) << "what was read so far";
    phone().tree().setZoneTemp(1, 42000);
    std::vector<int> again;
    EXPECT_EQ(zones.getTemps(again), 0);
    EXPECT_EQ(again, (std::vector<int>{40000, 42000}));
    zones.configure({{{0, "cpu"}}, "\"none\"\n"});
    EXPECT_EQ(zones.getTemps(again), -1) << "one unknown zone disables the list";
}
