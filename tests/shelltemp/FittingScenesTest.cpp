#include "shelltemp/FittingScenes.h"

#include <gtest/gtest.h>

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

kelvo::ZoneTable zones() {
    kelvo::ZoneTable table;
    for (const char* type : {"skin", "cpu", "board", "battery_ntc"}) {
        table.add(type);
    }
    return table;
}

void load(FittingScenes& scenes, const std::string& text) {
    scenes.getFittingModels(parsed("{" + text + "}"), zones(), 4);
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

const std::string kWithBackup = scene("default", 0, "skin") + "," + scene("backup_a", 1, "cpu");

// A backup set that uses the board first and the cpu second.
const std::string kTwoModels =
        "'backup_b':{'temp_model':{" + model("m", 2, "board") + "," + model("n", 3, "cpu") + "}}";

}  // namespace

TEST(FittingScenesTest, choosesWhatToStartWith) {
    // configured, ambientCharge, starts (with), ambientSet
    const std::tuple<std::string, bool, const char*, const char*> cases[] = {
            {"", false, "default", ""},
            {scene("default", 4, "skin") + "," + scene("backup_a", 1, "cpu"), false, "default 4",
             ""},
            {scene("default", 4, "unknown") + "," + scene("backup_b", 2, "cpu") + "," +
                     scene("backup_a", 1, "cpu"),
             false, "backup_a 1", ""},
            {scene("backup", 1, "cpu") + "," + scene("backup_b", 2, "cpu"), false, "backup_b 2",
             ""},
            {scene("ambient", 1, "cpu") + "," + scene("ambient_charge", 1, "cpu"), false, "default",
             "ambient"},
            {scene("ambient", 1, "cpu") + "," + scene("ambient_charge", 1, "cpu"), true, "default",
             "ambient_charge"},
    };
    for (const auto& [configured, ambientCharge, starts, ambientSet] : cases) {
        FittingScenes scenes;
        load(scenes, configured);
        EXPECT_EQ(current(scenes), "") << "nothing is chosen yet";
        scenes.chooseStartingModels(ambientCharge);
        EXPECT_EQ(current(scenes), starts) << configured;
        EXPECT_EQ(ambient(scenes), ambientSet) << configured;
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
    // bad zones, result, current set, backup sets that are left
    using Step = std::tuple<std::vector<int32_t>, int, const char*, int32_t>;
    const std::pair<const char*, std::vector<Step>> cases[] = {
            {"a zone of no backup set", {{{kSkin}, 0, "backup_a 1", 2}}},
            {"the first set uses it", {{{kCpu}, 0, "backup_b 2", 1}}},
            {"only the latest bad zone counts", {{{kCpu, kSkin}, 0, "backup_a 1", 2}}},
            {"only a set's first model counts, and a set given up stays so",
             {{{kCpu}, 0, "backup_b 2", 1}, {{kCpu, kCpu}, 0, "backup_b 2", 1}}},
            {"none is left", {{{kCpu}, 0, "backup_b 2", 1}, {{kCpu, kBoard}, -1, "backup_b 2", 0}}},
            {"no zone is bad", {{{}, -1, "default 0", 2}}},
    };
    for (const auto& [why, steps] : cases) {
        FittingScenes scenes;
        load(scenes, kWithBackup + "," + kTwoModels);
        scenes.chooseStartingModels(false);
        for (const auto& [badZones, result, set, left] : steps) {
            EXPECT_EQ(scenes.updateTempFittingModel(badZones), result) << why;
            EXPECT_EQ(current(scenes), set) << why;
            EXPECT_EQ(scenes.backupCount(), left) << why;
        }
    }
}

TEST(FittingScenesTest, keepsItsChoiceThroughAReloadAsFarAsThereIsSuchASet) {
    const auto none = [](FittingScenes&) {};
    const auto fallBack = [](FittingScenes& scenes) { scenes.updateTempFittingModel({kSkin}); };
    const auto switchToBackup = [](FittingScenes& scenes) {
        scenes.switchFittingScene("backup_a");
    };
    const auto both = [&](FittingScenes& scenes) {
        fallBack(scenes);
        switchToBackup(scenes);
    };
    using Choice = std::function<void(FittingScenes&)>;
    // why, choose, reloaded, set, backups
    const std::tuple<const char*, Choice, std::string, const char*, int32_t> cases[] = {
            {"new models", none, scene("default", 7, "cpu"), "default 7", 1},
            {"a scene that is gone keeps its models", none, scene("flashon", 7, "cpu"), "default 0",
             1},
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
    for (const auto& [why, choose, reloaded, set, backups] : cases) {
        FittingScenes scenes;
        load(scenes, kWithBackup);
        scenes.chooseStartingModels(false);
        choose(scenes);
        reload(scenes, reloaded);
        EXPECT_EQ(current(scenes), set) << why;
        EXPECT_EQ(scenes.backupCount(), backups) << why;
    }
}

TEST(FittingScenesTest, takesBackupSetsForGoodAgainAfterAReload) {
    LogCapture log;
    FittingScenes scenes;
    load(scenes, kWithBackup);
    scenes.chooseStartingModels(false);
    EXPECT_EQ(scenes.updateTempFittingModel({kCpu}), -1);
    reload(scenes, kWithBackup);
    EXPECT_EQ(scenes.updateTempFittingModel({kSkin}), 0);
    reload(scenes, scene("default", 0, "skin"));
    EXPECT_EQ(scenes.backupCount(), 1) << "kept, so that each attempt says that the list is empty";
    EXPECT_EQ(scenes.updateTempFittingModel({kSkin}), -1);
    EXPECT_EQ(log.errors("The list should not be empty!"), 1u);
}

TEST(FittingScenesTest, saysWhatTheCurrentSetStandsOn) {
    const std::pair<std::string, FittingModelKind> cases[] = {
            {model("a", 0, "cpu"), FittingModelKind::OTHER_ZONE},
            {model("a", 0, "battery_ntc"), FittingModelKind::BATTERY_ZONE},
            {"'a':{'index':0,'thermal_zone':['battery_ntc','cpu'],'coefficient':[1]}",
             FittingModelKind::SEVERAL_ZONES},
            {model("a", -1, "cpu") + "," + model("b", 0, "battery_ntc"),
             FittingModelKind::BATTERY_ZONE},
            {model("a", -1, "cpu"), FittingModelKind::NONE},
            {"", FittingModelKind::NONE},
    };
    for (const auto& [models, kind] : cases) {
        FittingScenes scenes;
        load(scenes, "'default':{'temp_model':{" + models + "}}");
        scenes.chooseStartingModels(false);
        EXPECT_EQ(scenes.currentKind(), kind) << models;
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
