#include "config/ConfigFiles.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <optional>
#include <ostream>

#include "StoredConfig.h"
#include "support/LogCapture.h"

using kelvo::getFileContents;

namespace {

const std::string kPaths[] = {kOriginConfig, kDataConfig};

struct ChoiceRow {
    const char* what;
    std::optional<time_t> originTime;  // absent: no such file
    std::optional<time_t> dataTime;
    int chosen;
};

void PrintTo(const ChoiceRow& row, std::ostream* out) {
    *out << row.what;
}

class ConfigFilesChoice : public testing::TestWithParam<ChoiceRow> {};

}  // namespace

TEST_P(ConfigFilesChoice, takesNewest) {
    const ChoiceRow& row = GetParam();
    if (row.originTime) {
        storeConfig(kOriginConfig, R"({"file":0})", *row.originTime);
    }
    if (row.dataTime) {
        storeConfig(kDataConfig, R"({"file":1})", *row.dataTime);
    }
    std::string raw;
    std::string json;
    LogCapture log;
    EXPECT_EQ(getFileContents(kPaths, 2, raw, json), row.chosen);
    if (row.chosen < 0) {
        EXPECT_EQ(log.count(ANDROID_LOG_ERROR, "Cann't find valid config file!"), 1U);
        return;
    }
    EXPECT_EQ(json, R"({"file":)" + std::to_string(row.chosen) + "}");
    EXPECT_EQ(raw, phone().node(kPaths[row.chosen]));
    EXPECT_EQ(log.count(ANDROID_LOG_INFO,
                        "Load config file(" + kPaths[row.chosen] + ") suceessfully!"),
              1U);
}

INSTANTIATE_TEST_SUITE_P(Rows, ConfigFilesChoice,
                         testing::Values(ChoiceRow{"tieGoesToLater", 500, 500, 1},
                                         ChoiceRow{"olderData", 501, 500, 0},
                                         ChoiceRow{"newerData", 500, 501, 1},
                                         ChoiceRow{"noData", 500, std::nullopt, 0},
                                         ChoiceRow{"noOrigin", std::nullopt, 500, 1},
                                         ChoiceRow{"epochIsNew", 0, std::nullopt, 0},
                                         ChoiceRow{"beforeEpochIsOld", -1, std::nullopt, -1},
                                         ChoiceRow{"nothing", std::nullopt, std::nullopt, -1}),
                         [](const auto& row) { return row.param.what; });

TEST(ConfigFiles, passesOverEmptyFileWithoutAMessage) {
    storeConfig(kOriginConfig, "{}", 500);
    setFile(kDataConfig, "", 900);
    std::string raw;
    std::string json;
    LogCapture log;
    EXPECT_EQ(getFileContents(kPaths, 2, raw, json), 0);
    EXPECT_TRUE(log.has("Load config file /data/zenta_lib/kelvo.conf"));
    EXPECT_FALSE(log.has("Stat config file mtime 900"));
}

TEST(ConfigFiles, olderFileDoesNotStandInForUnreadableNewer) {
    storeConfig(kDataConfig, "{}", 900);
    sim::DeviceTree tree = phone();
    tree.addFolder("/newer");  // has a size, but read() refuses it
    std::string raw;
    std::string json;
    const std::string paths[] = {kDataConfig, "/newer", kDataConfig};
    LogCapture log;
    EXPECT_EQ(getFileContents(paths, 3, raw, json), -1);
    EXPECT_TRUE(log.has("It's a newer config, read it"));
    EXPECT_TRUE(log.has("It's an older config, skip."));
    EXPECT_TRUE(log.has("Cann't find valid config file!"));
}

TEST(ConfigFiles, newestFileThatDoesNotDecryptFails) {
    storeConfig(kOriginConfig, "{}", 500);
    setFile(kDataConfig, R"({"plain":1})", 501);
    std::string raw;
    std::string json;
    LogCapture log;
    EXPECT_EQ(getFileContents(kPaths, 2, raw, json), -1);
    EXPECT_EQ(log.count(ANDROID_LOG_ERROR, "Read config file failed!"), 1U);
    EXPECT_EQ(getFileContents(kPaths, 0, raw, json), -1);
    EXPECT_EQ(log.count(ANDROID_LOG_ERROR, "Cann't find valid config file!"), 1U);
}
