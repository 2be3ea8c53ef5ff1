// Processor and graphics processor, from their nodes and services to the report.

#include "HeatSourceTest.h"
#include "core/DataCollector.h"

namespace {

constexpr char kLoad[] = "/sys/class/kgsl/kgsl-3d0/devfreq/gpu_load";
constexpr char kBusy[] = "/sys/class/kgsl/kgsl-3d0/gpu_busy_percentage";
constexpr char kClock[] = "/sys/class/kgsl/kgsl-3d0/gpuclk";
constexpr char kMtkLoad[] = "/sys/module/ged/parameters/gpu_loading";
constexpr char kMtkClock[] = "/sys/kernel/ged/hal/current_freqency";

struct CpuHeatTest : HeatSourceTest {
    void setStats(const std::string& text) { phone().perform(sim::TaskStats{text}); }
    size_t samples(int mW) const {
        return log.errors("cpuComp processRawSample energy=" + std::to_string(mW));
    }
};

struct GpuHeatTest : HeatSourceTest {
    using Text = std::optional<std::string>;
    void startWithTable(const std::string& clocks, const std::string& currents) {
        start("'gpu_model':{'gpufreq':" + clocks + ",'powermA':" + currents + "}");
        monitor();
    }
    void setNode(const char* path, const Text& text) {
        phone().perform(sim::SetNodes{{{path, text}}});
    }
    /** The sample of the next pass. */
    std::string next() {
        log.clear();
        runUntil(mTime += 5);
        return log.lastAfter("gpuComp processRawSample energy=").value_or("");
    }

  private:
    double mTime = 0;
};

}  // namespace

TEST_F(CpuHeatTest, reportsTheThreadsThatHeatMost) {
    start();
    setStats(
            "10\t11\t4000000\trender\n10\t12\t1000000\tworker\n20\t21\t2500000\trender\n"
            "30\t31\t7500\tidle\n");
    monitor();
    EXPECT_EQ(reported("cpu"), "{'avgHeat':-1}") << "the first pass only arms";
    runUntil(20);
    EXPECT_EQ(reported("cpu"), "{'avgHeat':-1}") << "four samples";
    EXPECT_EQ(samples(1501), 4U);
    runUntil(40);
    EXPECT_EQ(reported("cpu"),
              "{'avgHeat':1501,'keyFactor':{'Power':1501,'render':250,'worker':250}}")
            << "five million a reading in process 10, four readings; the name's first share stands";
    setStats("");
    runUntil(65);
    EXPECT_EQ(reported("cpu"), "{'avgHeat':0}") << "a service with nothing to tell gives 0";
    EXPECT_TRUE(log.has("cpuComp readCpuTaskstats return empty"));
}

TEST_F(CpuHeatTest, goesOnWithoutItsServiceAndFindsItAgain) {
    scenario.services.erase("performance");
    start();
    setStats("1\t1\t5000000\tx\n");
    monitor();
    runUntil(5);
    EXPECT_EQ(samples(0), 1U);
    EXPECT_EQ(log.errors("cpuComp get perf service failed"), 2U) << "at construction and now";
    setService("performance", true);
    runUntil(10);
    EXPECT_EQ(samples(0), 2U) << "the sample that finds it is lost";
    runUntil(15);
    EXPECT_EQ(samples(1000), 1U);
    setService("performance", false);
    EXPECT_EQ(log.errors("cpuComp perf service died, will try to reconnect."), 1U);
    setService("performance", true);
    runUntil(25);
    EXPECT_EQ(samples(0), 3U);
    EXPECT_EQ(samples(1000), 2U);
}

TEST_F(CpuHeatTest, handsOverThreadsThatStayAtTheTop) {
    start();
    setStats("1234\t5678\t5000000\tspinner\n");
    monitor();
    runUntil(1810);
    reported("cpu");
    phone().perform(sim::Dump{});
    const Json::Value threads = kelvo::DataCollector::getInstance().getData()["exceptthread"];
    EXPECT_EQ(threads["spinner"]["pid_tid"], "1234_5678");
    EXPECT_EQ(threads["spinner"]["localDay"], "20260301");
    EXPECT_EQ(threads["spinner"]["keepTime"], 1810);
    kelvo::DataCollector::getInstance().reset(0);
    phone().perform(sim::Dump{});
    EXPECT_TRUE(kelvo::DataCollector::getInstance().getData()["exceptthread"].isNull())
            << "handed over once";
}

TEST_F(GpuHeatTest, scalesTheCurrentAtTheClockWithTheLoad) {
    startWithTable("[300,600]", "[100,250]");
    // load, clock, energy, why
    const std::tuple<Text, Text, std::string, const char*> rows[] = {
            {"50", "450000000", "87", ""},
            {"100\n", "700999999\n", "300", "above the table; whole MHz"},
            {"100", "300999999", "0", "at the lowest row"},
            {"7 %", "600000000", "17", "up to the first blank"},
            {std::nullopt, "600000000", "-2", "no load counts as -1"},
            {"50", std::nullopt, "0", "no clock"},
            {"garbage", "600000000", "0", ""},
            {"100", "2500000000", "1200", "more Hz than 32 bits hold"},
            {"100", "5000000000000000", "1073741824", "more MHz than 32 bits hold"},
            {"99999999999999999999", "600000000", "2147483647", "saturates"},
    };
    for (const auto& [load, clock, energy, why] : rows) {
        setNode(kLoad, load);
        setNode(kClock, clock);
        EXPECT_EQ(next(), energy) << why;
    }
    setNode(kLoad, std::nullopt);
    setNode(kBusy, "10 %\n");
    setNode(kClock, "600000000");
    EXPECT_EQ(next(), "25") << "the other load node";
}

TEST_F(GpuHeatTest, readsMediaTeksNodes) {
    scenario.nodes.push_back({"/proc/chip/hw_code", "0907\n"});
    startWithTable("[300000,600000]", "[100,250]");
    setNode(kMtkLoad, "50 10 40");
    setNode(kMtkClock, "450000 3");
    setNode(kLoad, "99");
    EXPECT_EQ(next(), "87");
}

TEST_F(GpuHeatTest, averagesSinceTheLastQuery) {
    startWithTable("[300,600]", "[100,250]");
    setNode(kClock, "600000000");
    setNode(kLoad, "40");
    runUntil(10);
    setNode(kLoad, "80");
    runUntil(19);
    // The pass at 0 had no nodes: load and clock of -1.
    EXPECT_EQ(reported("gpu"), "{'avgHeat':-1}") << "too few samples, averages are kept";
    runUntil(20);
    const std::string power150 = "{'avgHeat':150,'keyFactor':{'Power':150,";
    EXPECT_EQ(reported("gpu"), power150 + "'agvfreq':479,'agvload':47}}");
    EXPECT_EQ(reported("gpu"), power150 + "'agvfreq':0,'agvload':0}}") << "nothing since";
    runUntil(40);
    HeatProcessCenter::getInstance()->getMainHeatCompent();
    runUntil(45);
    EXPECT_EQ(reported("gpu"),
              "{'avgHeat':200,'keyFactor':{'Power':200,'agvfreq':600,'agvload':80}}")
            << "the ranking began anew";
}

TEST_F(GpuHeatTest, doesWithoutAUsableTable) {
    startWithTable("[300,0.0]", "[100,250]");
    EXPECT_TRUE(log.has("gpuComp gpu_model conf is invalid"));
    setNode(kLoad, "50");
    setNode(kClock, "450000000");
    EXPECT_EQ(next(), "0");
}
