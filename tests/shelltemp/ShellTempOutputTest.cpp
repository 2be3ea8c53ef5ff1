// What a cycle makes of zone temperatures: limits, and what reaches the kernel node.

#include <cutils/trace.h>

#include <filesystem>

#include "support/EngineTest.h"

namespace {

uint64_t tracedTags = 0;
std::vector<std::string> traced;

struct ShellTempOutputTest : EngineTest {
    ShellTempOutputTest() { addZone("skin", 40000); }

    void useModels(const std::string& models) {
        setScenes("'default':{'temp_model':{" + models + "}}");
    }
};

}  // namespace

// In place of the library's.
extern "C" uint64_t atrace_get_enabled_tags() {
    return tracedTags;
}
extern "C" void atrace_int_body(const char* name, int32_t value) {
    traced.push_back(std::string(name) + " " + std::to_string(value));
}

TEST_F(ShellTempOutputTest, writesIndexesInOrderAndNegativeOnesNever) {
    useModels(model("a", 3, "skin") + "," + model("b", 0, "skin") + "," + model("r", -2, "skin") +
              ",'u':{'index':5,'thermal_zone':['skin'],'coefficient':[1],'type':3}");
    startPhone();
    runUntil(0);
    EXPECT_EQ(takeWrites(), (Lines{"0 40000", "3 40000"}));
    EXPECT_TRUE(log.has("update shell temp -2:40000"));
    EXPECT_EQ(log.count("fitting model (3) has not supported!"), 1u);
}

TEST_F(ShellTempOutputTest, writesNothingWhileAZoneFailsAndRecovers) {
    addZone("cpu", 40000);
    useModels(model("a", 0, "skin") + "," + model("b", 1, "cpu"));
    startPhone();
    runUntil(0);
    takeWrites();
    setTemp(0, 40400);
    setTemp(1, std::nullopt);
    runUntil(5);
    EXPECT_EQ(takeWrites(), Lines{}) << "also not the model that was evaluated before";
    EXPECT_EQ(log.errors("Get temp(tz:1) failed!"), 1u);
    setTemp(1, 40000);
    runUntil(10);
    EXPECT_EQ(takeWrites(), (Lines{"0 40400", "1 625"})) << "index 1 creeps up from 0";
}

TEST_F(ShellTempOutputTest, writesAgainOnceTheNodeTakesIt) {
    useModels(model("a", 0, "skin") + "," + model("b", 1, "skin"));
    scenario.nodes.push_back({"/proc/shell-temp", std::nullopt});
    startPhone();
    runUntil(5);
    EXPECT_EQ(log.count("open /proc/shell-temp failed(No such file or directory)"), 2u)
            << "one try a cycle: the indexes after a failed write wait";
    phone().tree().addFolder("/proc");
    const std::string node = phone().tree().hostPath("/proc/shell-temp");
    std::filesystem::create_symlink("/dev/full", node);
    runUntil(10);
    EXPECT_EQ(log.count("write file /proc/shell-temp failed.(No space left on device)"), 1u);
    phone().perform(sim::SetNodes{{{"/proc/shell-temp", ""}}});
    runUntil(15);
    EXPECT_EQ(takeWrites(), (Lines{"0 40000", "1 40000"}));
}

TEST_F(ShellTempOutputTest, tracesTenthsAboveFortyDegreesWhileTracingIsOn) {
    useModels(model("a", 3, "skin") + "," + model("b", -2, "skin"));
    startPhone();
    runUntil(0);
    EXPECT_EQ(traced, Lines{});
    tracedTags = ATRACE_TAG_ALWAYS;
    setTemp(0, 41100);
    runUntil(5);
    EXPECT_EQ(traced, (Lines{"a 11", "b 11"}));
}
