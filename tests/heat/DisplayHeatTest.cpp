
#include "HeatSourceTest.h"
#include "heat/DisplayCompHeat.h"
#include "heat/DisplayModel.h"
#include "links/GlobalFrames.h"

namespace {

constexpr char kLevelNode[] = "/sys/class/backlight/panel0-backlight/brightness";
constexpr char kMaxNode[] = "/sys/class/backlight/panel0-backlight/max_brightness";

struct DisplayHeatTest : HeatSourceTest {
    void startWithMaximum(const std::string& maximum) {
        scenario.nodes.push_back({kMaxNode, maximum});
        // The model is that of one panel, whatever is configured.
        start("'brightness_model':{'factor':['el_brt','el_lvl','60_pwr'],'coefficient':[1,2,400]}");
    }
    void setLevel(const std::optional<std::string>& level) {
        phone().perform(sim::SetNodes{{{kLevelNode, level}}});
    }
    float power() { return DisplayModel::getInstance().getDisplayPower(); }
};

}  // namespace

TEST_F(DisplayHeatTest, followsAnExtendedPanel) {
    startWithMaximum("10239\n");
    const std::pair<std::optional<std::string>, float> rows[] = {
            {"2", 60},     {"0\n", 0},     {"1", 60},          {"19", 60},
            {"20", 61},    {"8191", 255},  {"8192\n", 278},    {"8203", 278},
            {"8204", 279}, {"10229", 429}, {"10239", 430},     {"10240", 430},
            {"10241", 64}, {"-1", 64},     {std::nullopt, 64}, {"99999999999999999999", 64},
            {"dark", 0},
    };
    for (const auto& [level, expected] : rows) {
        setLevel(level);
        EXPECT_EQ(power(), expected) << level.value_or("absent");
    }
    EXPECT_EQ(log.errors("displayComp Read file(" + std::string(kLevelNode) + ") failed!"), 1U);
    EXPECT_EQ(log.errors("displayComp Backlight Node(" + std::string(kLevelNode) +
                         ") brightness 10241 is abnormal"),
              1U);
}

TEST_F(DisplayHeatTest, followsTheFrameRate) {
    startWithMaximum("2047");
    setLevel("2047");
    const std::pair<int32_t, float> rows[] = {
            {0, 288},      {59999, 288},   {60000, 288},    {89999, 288},  {90000, 318},
            {119999, 318}, {120000, 227},  {120999, 227},   {121000, 298}, {-999, 288},
            {-1000, 298},  {1 << 30, 298}, {INT32_MIN, 298}};
    for (const auto& [frames, expected] : rows) {
        phone().perform(sim::Frames{frames});
        EXPECT_EQ(power(), expected) << frames;
    }
    setService("frames", false);
    EXPECT_EQ(kelvo::getGlobalFrames(), -1);
    EXPECT_EQ(log.errors("unable to get surfaceflinger"), 1U);
    EXPECT_EQ(power(), 288) << "no compositor: 0 frames";
    setLevel(std::nullopt);
    EXPECT_EQ(power(), 76) << "level 150 of 2047 is 35 nits";
}

TEST_F(DisplayHeatTest, takesTheUsageFeedFirst) {
    startWithMaximum("2047");
    setLevel("2047");
    monitor();
    EXPECT_EQ(log.errors("displayComp processRawSample energy=288"), 1U);
    phone().perform(sim::Usage{{}, {}, {}, {{0, 3600, 321000}}});
    runUntil(5);
    EXPECT_EQ(log.errors("displayComp processRawSample energy=321"), 1U);
    phone().perform(sim::Usage{{}, {}, {}, {{0, 3600, 0}}});
    runUntil(20);
    EXPECT_EQ(log.errors("displayComp processRawSample energy=288"), 4U)
            << "no figure: the model's";
    EXPECT_EQ(reported("display"), "{'avgHeat':296,'keyFactor':{'Brightness':2047,'Power':296}}");
    DisplayCompHeat alone;
    for (int i = 0; i < 5; ++i) {
        alone.processRawSample();
    }
    EXPECT_EQ(alone.getHeatInfo()->keyFactor,
              (std::map<std::string, int>{{"Brightness", 2047}, {"Power", 288}}));
    EXPECT_TRUE(log.has("displayComp getDdicConf: 60_pwr=400, 120_pwr=-1"));
    setLevel("0");
    runUntil(45);
    EXPECT_EQ(reported("display"), "{'avgHeat':0}");
}

TEST_F(DisplayHeatTest, asksThePanelElsewhere) {
    scenario.nodes.push_back({"/proc/chip/hw_code", "0\n"});
    scenario.services.erase("panel");
    start();
    EXPECT_EQ(power(), 0) << "a HAL that does not answer shows a dark screen";
    EXPECT_EQ(log.errors("displayComp [checkPanelService], Get display service filed."), 2U)
            << "once for the maximum";
    setService("panel", true);
    phone().perform(sim::Panel{.max = 255, .level = 128});
    EXPECT_EQ(power(), 74) << "30 nits";
    EXPECT_EQ(DisplayModel::getInstance().getMaxBrightness(), 255);
    EXPECT_EQ(DisplayModel::getInstance().getValFromPanelService(30), 0) << "no such value";
    setService("panel", false);
    EXPECT_EQ(power(), 0);
    setService("panel", true);
    EXPECT_EQ(power(), 74) << "found again";
}
