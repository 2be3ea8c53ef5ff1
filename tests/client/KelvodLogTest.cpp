#include "client/KelvodLog.h"

#include <gtest/gtest.h>

#include "sim/tree/TemporaryFolder.h"

namespace {

struct KelvodLogTest : testing::Test {
    void write(const std::string& text) { mFile << text << std::flush; }
    /** Scene, file, error, loads and refusals after what has been written. */
    std::string state() {
        log.update();
        return log.scene().value_or("-") + " " + log.configFile().value_or("-") + " [" +
               log.configError().value_or("-") + "] " + std::to_string(log.loads()) + " " +
               std::to_string(log.refusals());
    }

    const sim::TemporaryFolder folder{"kelvo-test-"};
    client::KelvodLog log{folder.path() + "/log"};

  private:
    std::ofstream mFile{log.path()};
};

}  // namespace

TEST_F(KelvodLogTest, knowsWhatTheLinesTell) {
    const std::pair<const char*, const char*> rows[] = {
            {"thermalHold:21, thermalHoldDown:21", "- - [-] 0 0"},
            {"kelvo main start", "- - [-] 0 0"},
            {"Load config file(/a/kelvo.conf) suceessfully!", "- - [-] 0 0"},
            {"Get sub file contents failed!", "- - [Get sub file contents failed!] 0 0"},
            {"load normal fitting model",
             "default /a/kelvo.conf [Get sub file contents failed!] 1 0"},
            {"switch to scene flashon success",
             "flashon /a/kelvo.conf [Get sub file contents failed!] 1 0"},
            {"switch to scene screen_fold failed, keep origin",
             "flashon /a/kelvo.conf [Get sub file contents failed!] 1 0"},
            // A mended sub-file, which is not the main file.
            {"Load config file(/a/kelvo_SM8450.conf) suceessfully!",
             "flashon /a/kelvo.conf [Get sub file contents failed!] 1 0"},
            {"load normal fitting model", "flashon /a/kelvo.conf [-] 2 0"},
            // Refused: the models are those of the document before.
            {"Load config file(/b/kelvo.conf) suceessfully!", "flashon /a/kelvo.conf [-] 2 0"},
            {"Parse config file failed!", "flashon /a/kelvo.conf [Parse config file failed!] 2 1"},
            {"load normal fitting model", "flashon /a/kelvo.conf [Parse config file failed!] 3 1"},
            {"Load config file(/b/kelvo.conf) suceessfully!",
             "flashon /a/kelvo.conf [Parse config file failed!] 3 1"},
            {"load normal fitting model", "flashon /b/kelvo.conf [-] 4 1"},
            {"Parse thermal status config faild.",
             "flashon /b/kelvo.conf [Parse thermal status config faild.] 4 1"},
            {"update current fitting model(scene:backup_1).",
             "backup_1 /b/kelvo.conf [Parse thermal status config faild.] 4 1"},
            // Another daemon: without a configuration, then one that begins with a backup.
            {"kelvo main start", "- - [-] 4 1"},
            {"Get file contents failed!", "- - [Get file contents failed!] 4 2"},
            {"kelvo main start", "- - [-] 4 2"},
            {"load normal fitting model", "default - [-] 5 2"},
            {"ShellTempFitting, current fitting model is empty, use backup front model",
             "- - [-] 5 2"},
    };
    for (const auto& [line, known] : rows) {
        write("kelvo E 11-22 07:59:33 18963 18972 " + std::string(line) + "\n");
        EXPECT_EQ(state(), known) << line;
    }
}

TEST_F(KelvodLogTest, takesALineWhenItIsWhole) {
    write("switch to scene fla");
    EXPECT_EQ(state(), "- - [-] 0 0");
    write("shon success\n");
    EXPECT_EQ(state(), "flashon - [-] 0 0");
    std::ofstream(log.path()) << "kelvo main start\n";
    EXPECT_EQ(state(), "- - [-] 0 0") << "a shorter file is a new one";
}
