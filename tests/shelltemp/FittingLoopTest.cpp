// When the engine makes its cycles.

#include <sys/inotify.h>
#include <unistd.h>

#include <algorithm>

#include "shelltemp/ShellTempFitting.h"
#include "sim/scenario/PhonePaths.h"
#include "support/EngineTest.h"

namespace {

const std::string kTwoModels =
        "{'shell_temp_fitting_model':{'default':{'temp_model':{" + model("a", 0, "skin") +
        ",'b':{'index':1,'thermal_zone':['skin','cpu'],'coefficient':[0.5,0.5]}}}}";

struct FittingLoopTest : EngineTest {
    FittingLoopTest() {
        addZone("skin", 40000);
        addZone("cpu", 40000);
        setConfig(kTwoModels + "}");
    }

    void updateScene(const std::string& scene) {
        ShellTempFitting::getInstance().updateScene(scene, false, 0);
    }

    /** How many cycles ran since the last call; each one that sees a new value writes it. */
    int cyclesUntil(double time) {
        int cycles = 0;
        for (; mTime <= time; mTime += 0.5) {
            phone().tree().setZoneTemp(0, mTemp += 100);
            runUntil(mTime);
            cycles += takeWrites().empty() ? 0 : 1;
        }
        return cycles;
    }

  private:
    double mTime = 0;
    int32_t mTemp = 40000;
};

/** Counts how often a node is opened. */
class OpenCount {
  public:
    explicit OpenCount(const std::string& path) : mFd(inotify_init1(IN_NONBLOCK | IN_CLOEXEC)) {
        // Closing is watched too: equal events in a row would be merged into one.
        inotify_add_watch(mFd, path.c_str(), IN_OPEN | IN_CLOSE_NOWRITE);
    }
    ~OpenCount() { close(mFd); }
    int take() {
        inotify_event events[64];  // of a file that is watched itself, they carry no name
        const ssize_t size = read(mFd, events, sizeof(events));
        const size_t count = size < 0 ? 0 : static_cast<size_t>(size) / sizeof(inotify_event);
        return static_cast<int>(std::count_if(events, events + count, [](const auto& event) {
            return (event.mask & IN_OPEN) != 0;
        }));
    }

  private:
    const int mFd;
};

}  // namespace

TEST_F(FittingLoopTest, fitsEveryFiveSecondsAlsoWhenTheIntervalIsWrong) {
    scenario.properties["persist.sys.shelltemp.interval"] = "0";
    startPhone();
    EXPECT_TRUE(log.has("Wrong fitting interval 0 with property, reset to default"));
    EXPECT_EQ(cyclesUntil(0), 1);
    EXPECT_EQ(cyclesUntil(4.5), 0);
    EXPECT_EQ(cyclesUntil(5), 1);
    EXPECT_EQ(cyclesUntil(60), 11);
}

TEST_F(FittingLoopTest, slowsDownToFiveSecondsWhileTheScreenIsOff) {
    scenario.properties["persist.sys.shelltemp.interval"] = "3";
    startPhone();
    EXPECT_EQ(cyclesUntil(1), 1);
    updateScene("SCREEN:OFF");
    EXPECT_EQ(cyclesUntil(5.5), 1) << "woken at once, then no cycle before five seconds";
    EXPECT_EQ(cyclesUntil(6), 1);
    updateScene("SCREEN:ON");
    EXPECT_EQ(cyclesUntil(8.5), 1) << "woken at once";
    EXPECT_EQ(cyclesUntil(9), 1) << "three seconds again";
    EXPECT_EQ(log.countOf("screen just turned on, ignore check"), 2u) << "and so it limits nothing";
    EXPECT_TRUE(log.has("Get shell temp fitting interval 3"));
    EXPECT_TRUE(log.has("Adjust fitting interval 3"));
    EXPECT_TRUE(log.has("Update package SCREEN:OFF interval 5"));
}

TEST_F(FittingLoopTest, readsAZoneOnceACycleForAllModels) {
    startPhone();
    runUntil(0);
    OpenCount opens(phone().tree().hostPath(sim::zonePath(0, "temp")));
    runUntil(5);
    EXPECT_EQ(opens.take(), 1);
}

TEST_F(FittingLoopTest, readsTheZonesOnceBeforeTheFirstCycle) {
    scenario.zones[1].temp.reset();
    startPhone();
    EXPECT_FALSE(log.has("Get temp(tz:1) failed in readTempForFirstTime.!"));
    runUntil(5);
    EXPECT_EQ(log.count("Get temp(tz:1) failed in readTempForFirstTime.!"), 1u);
    EXPECT_EQ(log.count("Get temp(tz:1) failed!"), 2u);
}

TEST_F(FittingLoopTest, ticksEverySecondAndFitsOnEveryFifthTickWithTsensors) {
    setConfig(kTwoModels + ",'tsensor_tempzone_info':{'thermal_zone_type':['cpu']}}");
    startPhone();
    OpenCount opens(phone().tree().hostPath(sim::zonePath(1, "temp")));
    EXPECT_EQ(cyclesUntil(0), 1);
    opens.take();
    for (const double second : {1, 2, 3, 4}) {
        EXPECT_EQ(cyclesUntil(second), 0) << second;
        EXPECT_EQ(opens.take(), 1) << second;
    }
    EXPECT_EQ(cyclesUntil(5), 1);
    EXPECT_EQ(cyclesUntil(15), 2);
}
