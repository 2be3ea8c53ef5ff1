// When the engine makes its cycles.

#include <sys/inotify.h>
#include <unistd.h>

#include "shelltemp/ShellTempFitting.h"
#include "support/EngineTest.h"

using Writes = std::vector<std::string>;

namespace {

constexpr char kTwoModels[] =
        "{'shell_temp_fitting_model':{'default':{'temp_model':{"
        "'a':{'index':0,'thermal_zone':['skin'],'coefficient':[1]},"
        "'b':{'index':1,'thermal_zone':['skin','cpu'],'coefficient':[0.5,0.5]}}}}";

class FittingLoopTest : public EngineTest {
  protected:
    FittingLoopTest() {
        addZone("skin", 40000);
        addZone("cpu", 40000);
        setConfig(std::string(kTwoModels) + "}");
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
        inotify_add_watch(mFd, path.c_str(), IN_OPEN);
    }
    ~OpenCount() { close(mFd); }
    OpenCount(const OpenCount&) = delete;
    OpenCount& operator=(const OpenCount&) = delete;
    int take() {
        // Equal events in a row are merged, so take() follows each cycle and each open is told
        // apart by the close in between.
        char buffer[4096];
        const ssize_t size = read(mFd, buffer, sizeof(buffer));
        return size < 0 ? 0 : static_cast<int>(static_cast<size_t>(size) / sizeof(inotify_event));
    }

  private:
    const int mFd;
};

}  // namespace

TEST_F(FittingLoopTest, fitsEveryFiveSecondsFromTheStart) {
    startPhone();
    EXPECT_EQ(cyclesUntil(0), 1);
    EXPECT_EQ(cyclesUntil(4.5), 0);
    EXPECT_EQ(cyclesUntil(5), 1);
    EXPECT_EQ(cyclesUntil(60), 11);
}

TEST_F(FittingLoopTest, takesItsIntervalFromTheProperty) {
    scenario.properties["persist.sys.shelltemp.interval"] = "3";
    startPhone();
    EXPECT_EQ(cyclesUntil(2.5), 1);
    EXPECT_EQ(cyclesUntil(3), 1);
    EXPECT_TRUE(log.has("Get shell temp fitting interval 3"));
}

TEST_F(FittingLoopTest, replacesAWrongIntervalByFiveSeconds) {
    scenario.properties["persist.sys.shelltemp.interval"] = "0";
    startPhone();
    EXPECT_EQ(cyclesUntil(4.5), 1);
    EXPECT_EQ(cyclesUntil(5), 1);
    EXPECT_TRUE(log.has("Wrong fitting interval 0 with property, reset to default"));
    EXPECT_TRUE(log.has("Get shell temp fitting interval 5"));
}

TEST_F(FittingLoopTest, isSilentAboutTheDefaultInterval) {
    scenario.properties["persist.sys.shelltemp.interval"] = "5";
    startPhone();
    EXPECT_FALSE(log.has("Get shell temp fitting interval 5"));
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
    EXPECT_TRUE(log.has("Adjust fitting interval 3"));
    EXPECT_TRUE(log.has("Update package SCREEN:OFF interval 5"));
}

TEST_F(FittingLoopTest, keepsALongerIntervalWhileTheScreenIsOff) {
    scenario.properties["persist.sys.shelltemp.interval"] = "9";
    startPhone();
    runUntil(1);
    updateScene("SCREEN:OFF");
    EXPECT_TRUE(log.has("Update package SCREEN:OFF interval 9"));
}

TEST_F(FittingLoopTest, takesUpASceneOnlyOnce) {
    startPhone();
    auto& engine = ShellTempFitting::getInstance();
    EXPECT_EQ(engine.updateScene("com.game", false, 0), 0);
    EXPECT_EQ(engine.updateScene("com.game", false, 0), -1);
    EXPECT_EQ(engine.updateScene("com.game", true, 0), 0) << "another flag";
}

TEST_F(FittingLoopTest, readsAZoneOnceACycleForAllModels) {
    startPhone();
    runUntil(0);
    OpenCount opens(phone().tree().hostPath(sim::DeviceTree::zonePath(0, "temp")));
    runUntil(5);
    EXPECT_EQ(opens.take(), 1);
}

TEST_F(FittingLoopTest, readsTheZonesOnceBeforeTheFirstCycle) {
    scenario.zones[1].temp.reset();
    startPhone();
    EXPECT_FALSE(log.has("Get temp(tz:1) failed in readTempForFirstTime.!"));
    runUntil(0);
    EXPECT_EQ(log.count(ANDROID_LOG_ERROR, "Get temp(tz:1) failed in readTempForFirstTime.!"), 1u);
    EXPECT_EQ(log.count(ANDROID_LOG_ERROR, "Get temp(tz:1) failed!"), 1u);
    runUntil(5);
    EXPECT_EQ(log.count(ANDROID_LOG_ERROR, "Get temp(tz:1) failed in readTempForFirstTime.!"), 1u);
}

TEST_F(FittingLoopTest, ticksEverySecondAndFitsOnEveryFifthTickWithTsensors) {
    setConfig(std::string(kTwoModels) + ",'tsensor_tempzone_info':{'thermal_zone_type':['cpu']}}");
    startPhone();
    OpenCount opens(phone().tree().hostPath(sim::DeviceTree::zonePath(1, "temp")));
    EXPECT_EQ(cyclesUntil(0), 1);
    opens.take();
    for (const double second : {1, 2, 3, 4}) {
        EXPECT_EQ(cyclesUntil(second), 0) << second;
        EXPECT_EQ(opens.take(), 1) << second;
    }
    EXPECT_EQ(cyclesUntil(5), 1);
    EXPECT_EQ(cyclesUntil(15), 2);
}
