#include "client/KelvodLog.h"

#include <gtest/gtest.h>

#include "sim/tree/TemporaryFolder.h"

namespace {

using Text = std::optional<std::string>;

/** Lines as the daemon writes them; an empty one ends a step. */
struct Step {
    const char* what;
    std::vector<std::string> lines;
    Text scene, file, error;
    int32_t loads, refusals;
};

const std::string kMain = "/system_ext/etc/kelvo/kelvo.conf";
const std::string kData = "/data/zenta_lib/kelvo.conf";

std::string loaded(const std::string& path) {
    return "Load config file(" + path + ") suceessfully!";
}

const std::string kModels = "load normal fitting model";
const std::string kNotRead = "Get file contents failed!";

const Step kSteps[] = {
        {"nothing yet", {"thermalHold:21, thermalHoldDown:21"}, {}, {}, {}, 0, 0},
        {"start",
         {"kelvo main start", loaded(kMain), "Get sub file contents failed!", kModels},
         "default",
         kMain,
         "Get sub file contents failed!",
         1,
         0},
        {"lamp",
         {"switch to scene flashon success"},
         "flashon",
         kMain,
         "Get sub file contents failed!",
         1,
         0},
        {"no models for it",
         {"switch to scene screen_fold failed, keep origin"},
         "flashon",
         kMain,
         "Get sub file contents failed!",
         1,
         0},
        {"a mended sub-file, which is not the main file",
         {loaded(kMain), loaded("/system_ext/etc/kelvo/kelvo_SM8450.conf"), kModels},
         "flashon",
         kMain,
         {},
         2,
         0},
        {"refused, and the models are taken from the document before",
         {loaded(kData), "Parse config file failed!", kModels},
         "flashon",
         kMain,
         "Parse config file failed!",
         3,
         1},
        {"a part that an engine refuses",
         {loaded(kData), kModels, "Parse thermal status config faild."},
         "flashon",
         kData,
         "Parse thermal status config faild.",
         4,
         1},
        {"backup",
         {"update current fitting model(scene:backup_1)."},
         "backup_1",
         kData,
         "Parse thermal status config faild.",
         4,
         1},
        {"another daemon without a configuration",
         {"kelvo main start", kNotRead},
         {},
         {},
         kNotRead,
         4,
         2},
        {"one that begins with a backup",
         {"kelvo main start", kModels,
          "ShellTempFitting, current fitting model is empty, use backup front model"},
         {},
         {},
         {},
         5,
         2},
};

}  // namespace

TEST(KelvodLog, knowsWhatTheLinesTell) {
    const sim::TemporaryFolder folder("kelvo-test-");
    const std::string path = folder.path() + "/log";
    client::KelvodLog log(path);
    EXPECT_FALSE(log.update());
    std::ofstream file(path);
    for (const Step& step : kSteps) {
        SCOPED_TRACE(step.what);
        for (const std::string& line : step.lines) {
            file << "kelvo E 11-22 07:59:33 18963 18972 " << line << "\n";
        }
        file.flush();
        EXPECT_TRUE(log.update());
        EXPECT_EQ(log.scene(), step.scene);
        EXPECT_EQ(log.configFile(), step.file);
        EXPECT_EQ(log.configError(), step.error);
        EXPECT_EQ(std::pair(log.loads(), log.refusals()), std::pair(step.loads, step.refusals));
    }
}

TEST(KelvodLog, takesALineWhenItIsWhole) {
    const sim::TemporaryFolder folder("kelvo-test-");
    const std::string path = folder.path() + "/log";
    std::ofstream file(path);
    client::KelvodLog log(path);
    file << "switch to scene fla" << std::flush;
    log.update();
    file << "shon success\n" << std::flush;
    log.update();
    EXPECT_EQ(log.scene(), "flashon");
    std::ofstream(path) << "kelvo main start\n";
    log.update();
    EXPECT_EQ(log.scene(), std::nullopt) << "a shorter file is a new one";
}
