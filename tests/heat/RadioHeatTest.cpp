
#include "HeatSourceTest.h"
#include "heat/CellularCompHeat.h"
#include "heat/WifiCompHeat.h"

namespace {

constexpr uint32_t kWifiInfo = 103;
constexpr uint32_t kNetworkInfo = 104;
constexpr uint32_t kSpeedInfo = 105;

const std::string kTable =
        "'rsrp_value':[-120,-100,-80],'current_value_4G':[600,300,100],"
        "'current_value_5G':[900,500,200]";
const std::string kMobile = "transmit:0,receive:0,mobileTx:1,mobileRx:0";

std::string lte(int rsrp) {
    return "connectState:2,level:1,rssi:0,rssnr:0,rsrq:0,rsrp:" + std::to_string(rsrp);
}
std::string nr(int rsrp) {
    return "connectState:2,level:1,ssSinr:0,ssRsrp:" + std::to_string(rsrp) + ",ssRsrq:0";
}

struct RadioHeatTest : HeatSourceTest {
    void startWithTable(const std::string& members) { start("'cellar_model':{" + members + "}"); }
    /** What five texts on the traffic come to after one on the signal; as before if none counts. */
    template <typename Component>
    int converted(uint32_t code, const std::string& signal, const std::string& traffic) {
        call(code, signal);
        runUntil(mTime += 1);  // only what is newer than the last conversion counts
        for (int i = 0; i < 5; ++i) {
            call(kSpeedInfo, traffic);
        }
        return Component::getInstance().getHeatContribution();
    }
    int currentFor(const std::string& signal, const std::string& traffic = kMobile) {
        return converted<CellularCompHeat>(kNetworkInfo, signal, traffic);
    }
    int energyFor(const std::string& signal, const std::string& traffic) {
        return converted<WifiCompHeat>(kWifiInfo, signal, traffic);
    }
    double mTime = 0;
};

}  // namespace

TEST_F(RadioHeatTest, findsTheModemsCurrentInItsTable) {
    startWithTable(kTable);
    const std::pair<std::string, int> rows[] = {
            {lte(-110), 450}, {nr(-110), 700},  {lte(-121), 0},  {lte(-120), 0},
            {lte(-119), 585}, {lte(-100), 300}, {lte(-80), 100}, {lte(-70), 0},
            {lte(-60), -100}, {nr(-119), 880},  {nr(-80), 200},  {"nonsense", -700},
    };
    for (const auto& [signal, current] : rows) {
        EXPECT_EQ(currentFor(signal), current) << signal;
    }
    for (const char* traffic : {"transmit:9,receive:9,mobileTx:0,mobileRx:0", "", "mobileTx:9",
                                "transmit:0,receive:0,mobileTx:5,mobileRx:-6"}) {
        EXPECT_EQ(currentFor(lte(-110), traffic), 0) << traffic;
    }
}

TEST_F(RadioHeatTest, countsTextsAndSamplesAlike) {
    addZone("pa", 45000);
    addZone("base", 40000);
    startWithTable(kTable + ",'thermal_zone_type':['pa','base']");
    monitor();
    for (int second = 1; second <= 20; ++second) {
        runUntil(second);
        if (second % 5 == 2) {
            call(kNetworkInfo, nr(-110));
            call(kSpeedInfo, kMobile);
        }
        setTemp(0, 45000 + 60 * second);
    }
    EXPECT_EQ(log.errors("cellularComp processRawSample tempDiff=5540, mTzPa=45540, mTzBase=40000"),
              1U);
    // Samples at 0, 5, 10, 15 and 20 s of 0 mW, four texts of 700 mA that carry no difference.
    EXPECT_EQ(reported("cellular"),
              "{'avgHeat':350,'keyFactor':{'NtcSlopOf':53,'Power':350,'avgDiffTempPerMin':3084}}");
    EXPECT_EQ(reported("cellular"),
              "{'avgHeat':350,'keyFactor':{'NtcSlopOf':-1,'Power':350,'avgDiffTempPerMin':-1}}")
            << "the conversion took the samples";
}

TEST_F(RadioHeatTest, ignoresTextsWhileTheFeedHasAFigure) {
    startWithTable(kTable);
    monitor();
    ASSERT_EQ(currentFor(lte(-110)), 450);
    phone().perform(sim::Usage{{}, {{0, 3600, 200000}}, {{0, 3600, 500000}}, {}});
    EXPECT_EQ(currentFor(lte(-80)), 450) << "none counts";
    runUntil(mTime = 5);
    EXPECT_EQ(log.errors("wifiComp processRawSample, energy=200"), 1U);
    EXPECT_EQ(log.errors("specified Tz is empty!"), 2U) << "no zones were named";
    EXPECT_EQ(log.errors("cellularComp processRawSample tempDiff=0, mTzPa=-1, mTzBase=-1"), 1U);
    phone().perform(sim::Usage{{}, {}, {{0, 3600, 0}}, {}});
    EXPECT_EQ(currentFor(""), -700) << "the signal is new; 0 dBm lies far beyond the table";
}

TEST_F(RadioHeatTest, takesWhatAZonesNodeSaysAndElseMinusOne) {
    addZone("pa", std::nullopt);
    addZone("base", 40000);
    startWithTable(kTable + ",'thermal_zone_type':['pa','base']");
    monitor();
    EXPECT_EQ(log.errors("cellularComp processRawSample tempDiff=-40001, mTzPa=-1, mTzBase=40000"),
              1U);
    const std::pair<std::optional<int32_t>, const char*> rows[] = {
            {200000, "tempDiff=160000, mTzPa=200000, mTzBase=40000"},
            {-274000, "tempDiff=-314000, mTzPa=-274000, mTzBase=40000"},
            {39000, "tempDiff=-1000, mTzPa=39000, mTzBase=40000"},
            {std::nullopt, "tempDiff=-40001, mTzPa=-1, mTzBase=40000"},
    };
    double time = 0;
    for (const auto& [amplifier, line] : rows) {
        setTemp(0, amplifier);
        log.clear();
        runUntil(time += 5);
        EXPECT_EQ(log.errors("cellularComp processRawSample " + std::string(line)), 1U) << line;
    }
}

TEST_F(RadioHeatTest, countsWifiTrafficWhileWifiIsEnabled) {
    start();
    const std::string strong = ",ApState:13,linkSpeed:1,frequency:5180,rssi:-59,generation:6";
    const std::string traffic = "transmit:10000,receive:1840,mobileTx:0,mobileRx:0";
    EXPECT_EQ(energyFor("WifiState:1" + strong, traffic), -1) << "not enabled";
    EXPECT_EQ(energyFor("WifiState:3" + strong, traffic), 192);
    EXPECT_EQ(energyFor("WifiState:3", "transmit:5,receive:5,mobileTx:5,mobileRx:5"), 0);
    EXPECT_EQ(energyFor("WifiState:3,ApState:11,x", traffic), 2) << "the rest is as it was";
}
