#include "shelltemp/FittingScenes.h"

#include <gtest/gtest.h>
#include <json/reader.h>

#include <functional>

#include "support/Json.h"
#include "support/LogCapture.h"

using kelvo::FittingModelKind;
using kelvo::FittingScenes;

namespace {

// Zones by number: 0 skin, 1 cpu, 2 board, 3 battery_ntc.
constexpr int32_t kSkin = 0;
constexpr int32_t kCpu = 1;
constexpr int32_t kBoard = 2;

const kelvo::ZoneTable& zones() {
    static const kelvo::ZoneTable& table = *[] {
        auto* const filled = new kelvo::ZoneTable;
        for (const char* type : {"skin", "cpu", "board", "battery_ntc"}) {
            filled->add(type);
        }
        return filled;
    }();
    return table;
}

void load(FittingScenes& scenes, const std::string& text) {
    Json::Value root;
    ASSERT_TRUE(Json::Reader().parse(json("{" + text + "}"), root)) << text;
    scenes.getFittingModels(root, zones(), 4);
}

void reload(FittingScenes& scenes, const std::string& text) {
    scenes.resetBackups();
    load(scenes, text);
    scenes.restoreBackup();
}

/** Scene and the index of its first model: "backup_a 2"; the scene alone without models. */
std::string current(const FittingScenes& scenes) {
    const kelvo::TempFittingModel& set = scenes.current();
    return set.models.empty() ? set.scene
                              : set.scene + " " + std::to_string(set.models.front().index);
}

std::string ambient(const FittingScenes& scenes) {
    return scenes.ambient() == nullptr ? "" : scenes.ambient()->scene;
}

// A backup set that uses the board first and the cpu second.
const std::string kTwoModels =
        "'backup_b':{'temp_model':{" + model("m", 2, "board") + "," + model("n", 3, "cpu") + "}}";

}  // namespace

TEST(FittingScenesTest, choosesWhatToStartWith) {
    const struct {
        std::string scenes;
        bool ambientCharge;
        const char* current;
        const char* ambient;
    } cases[] = {
            {"", false, "default", ""},
            {scene("default", 4, "skin") + "," + scene("backup_a", 1, "cpu"), false, "default 4",
             ""},
            {scene("default", 4, "unknown") + "," + scene("backup_b", 2, "cpu") + "," +
                     scene("backup_a", 1, "cpu"),
             false, "backup_a 1", ""},
            {scene("backup", 1, "cpu"), false, "default", ""},
            {scene("ambient", 1, "cpu") + "," + scene("ambient_charge", 1, "cpu"), false, "default",
             "ambient"},
            {scene("ambient", 1, "cpu") + "," + scene("ambient_charge", 1, "cpu"), true, "default",
             "ambient_charge"},
    };
    for (const auto& test : cases) {
        FittingScenes scenes;
        load(scenes, test.scenes);
        EXPECT_EQ(current(scenes), "") << "nothing is chosen yet";
        scenes.chooseStartingModels(test.ambientCharge);
        EXPECT_EQ(current(scenes), test.current) << test.scenes;
        EXPECT_EQ(ambient(scenes), test.ambient) << test.scenes;
    }
}

TEST(FittingScenesTest, switchesOnlyToScenesWithModels) {
    LogCapture log;
    FittingScenes scenes;
    load(scenes, scene("flashon", 5, "skin") + "," + scene("screen_fold", 6, "unknown"));
    scenes.chooseStartingModels(false);
    EXPECT_EQ(scenes.switchFittingScene("flashon"), 1);
    for (const char* name : {"screen_fold", "default", ""}) {
        EXPECT_EQ(scenes.switchFittingScene(name), 0) << name;
        EXPECT_FALSE(scenes.switchAmbientScene(name)) << name;
        EXPECT_TRUE(log.has("switch to scene " + std::string(name) + " failed, keep origin"));
    }
    EXPECT_EQ(current(scenes), "flashon 5");
    EXPECT_EQ(ambient(scenes), "");
    EXPECT_TRUE(scenes.switchAmbientScene("flashon"));
    EXPECT_EQ(ambient(scenes), "flashon");
}

TEST(FittingScenesTest, fallsBackToTheFirstSetThatIsStillGood) {
    struct Step {
        std::vector<int32_t> badZones;
        int result;
        const char* current;
        int32_t left;
    };
    const struct {
        const char* why;
        std::vector<Step> steps;
    } cases[] = {
            {"a zone of no backup set", {{{kSkin}, 0, "backup_a 1", 2}}},
            {"the first set uses it", {{{kCpu}, 0, "backup_b 2", 1}}},
            {"only the latest bad zone counts", {{{kCpu, kSkin}, 0, "backup_a 1", 2}}},
            {"only a set's first model counts, and a set given up stays so",
             {{{kCpu}, 0, "backup_b 2", 1}, {{kCpu, kCpu}, 0, "backup_b 2", 1}}},
            {"none is left", {{{kCpu}, 0, "backup_b 2", 1}, {{kCpu, kBoard}, -1, "backup_b 2", 0}}},
            {"no zone is bad", {{{}, -1, "default 0", 2}}},
    };
    for (const auto& test : cases) {
        FittingScenes scenes;
        load(scenes,
             scene("default", 0, "skin") + "," + scene("backup_a", 1, "cpu") + "," + kTwoModels);
        scenes.chooseStartingModels(false);
        for (const Step& step : test.steps) {
            EXPECT_EQ(scenes.updateTempFittingModel(step.badZones), step.result) << test.why;
            EXPECT_EQ(current(scenes), step.current) << test.why;
            EXPECT_EQ(scenes.backupCount(), step.left) << test.why;
        }
    }
}

TEST(FittingScenesTest, keepsItsChoiceThroughAReloadAsFarAsThereIsSuchASet) {
    const auto fallBack = [](FittingScenes& scenes) { scenes.updateTempFittingModel({kSkin}); };
    const auto switchToBackup = [](FittingScenes& scenes) {
        scenes.switchFittingScene("backup_a");
    };
    const auto both = [&](FittingScenes& scenes) {
        fallBack(scenes);
        switchToBackup(scenes);
    };
    const struct {
        const char* why;
        std::function<void(FittingScenes&)> choose;
        std::string reloaded;
        const char* current;
        int32_t backups;
    } cases[] = {
            {"new models", [](FittingScenes&) {}, scene("default", 7, "cpu"), "default 7", 1},
            {"a scene that is gone keeps its models", [](FittingScenes&) {},
             scene("flashon", 7, "cpu"), "default 0", 1},
            {"a fallback goes with its scene", fallBack,
             scene("backup_0", 6, "cpu") + "," + scene("backup_a", 7, "board"), "backup_a 7", 2},
            {"a fallback that is gone", fallBack, scene("backup_b", 7, "skin"), "default 0", 1},
            {"a fallback whose models are gone", fallBack, scene("backup_a", 7, "unknown"),
             "default 0", 1},
            {"a backup scene that was asked for is no fallback", switchToBackup,
             scene("flashon", 7, "cpu"), "backup_a 1", 1},
            {"nor is one that was asked for after a fallback", both, scene("flashon", 7, "cpu"),
             "backup_a 1", 1},
    };
    for (const auto& test : cases) {
        FittingScenes scenes;
        load(scenes, scene("default", 0, "skin") + "," + scene("backup_a", 1, "cpu"));
        scenes.chooseStartingModels(false);
        test.choose(scenes);
        reload(scenes, test.reloaded);
        EXPECT_EQ(current(scenes), test.current) << test.why;
        EXPECT_EQ(scenes.backupCount(), test.backups) << test.why;
    }
}

TEST(FittingScenesTest, takesBackupSetsForGoodAgainAfterAReload) {
    LogCapture log;
    FittingScenes scenes;
    const std::string text = scene("default", 0, "skin") + "," + scene("backup_a", 1, "cpu");
    load(scenes, text);
    scenes.chooseStartingModels(false);
    EXPECT_EQ(scenes.updateTempFittingModel({kCpu}), -1);
    reload(scenes, text);
    EXPECT_EQ(scenes.updateTempFittingModel({kSkin}), 0);
    reload(scenes, scene("default", 0, "skin"));
    EXPECT_EQ(scenes.backupCount(), 1) << "kept, so that each attempt says that the list is empty";
    EXPECT_EQ(scenes.updateTempFittingModel({kSkin}), -1);
    EXPECT_EQ(log.count(ANDROID_LOG_ERROR, "The list should not be empty!"), 1u);
}

TEST(FittingScenesTest, saysWhatTheCurrentSetStandsOn) {
    const struct {
        std::string models;
        FittingModelKind kind;
    } cases[] = {
            {model("a", 0, "cpu"), FittingModelKind::OTHER_ZONE},
            {model("a", 0, "battery_ntc"), FittingModelKind::BATTERY_ZONE},
            {"'a':{'index':0,'thermal_zone':['battery_ntc','cpu'],'coefficient':[1]}",
             FittingModelKind::SEVERAL_ZONES},
            {model("a", -1, "cpu") + "," + model("b", 0, "battery_ntc"),
             FittingModelKind::BATTERY_ZONE},
            {model("a", -1, "cpu"), FittingModelKind::NONE},
            {"", FittingModelKind::NONE},
    };
    for (const auto& test : cases) {
        FittingScenes scenes;
        load(scenes, "'default':{'temp_model':{" + test.models + "}}");
        scenes.chooseStartingModels(false);
        EXPECT_EQ(scenes.currentKind(), test.kind) << test.models;
    }
}

TEST(FittingScenesTest, namesAnIndexAfterTheModelReadLast) {
    FittingScenes scenes;
    load(scenes, "'b':{'temp_model':{" + model("late", 0, "cpu") + "}},'a':{'temp_model':{" +
                         model("early", 0, "cpu") + "," + model("other", 1, "unknown") + "}}");
    EXPECT_EQ(kelvo::nameOf(scenes.modelNames(), 0), "late");
    EXPECT_EQ(kelvo::nameOf(scenes.modelNames(), 1), "other") << "although it came into no set";
    EXPECT_EQ(kelvo::nameOf(scenes.modelNames(), 2), "");
}
