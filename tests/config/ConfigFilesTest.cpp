#include "config/ConfigFiles.h"

#include <gtest/gtest.h>

#include <optional>

#include "StoredConfig.h"
#include "support/LogCapture.h"

using kelvo::getFileContents;

namespace {

const std::string kPaths[] = {kOriginConfig, kDataConfig};

class ConfigFilesTest : public testing::Test {
  protected:
    std::string raw;
    std::string json;
    LogCapture log;
};

}  // namespace

TEST_F(ConfigFilesTest, takesNewest) {
    const struct {
        std::optional<time_t> times[2];  // of the candidates that are there
        int chosen;
        const char* why;
    } cases[] = {
            {{500, 500}, 1, "a tie goes to the later candidate"},
            {{501, 500}, 0, "older copy"},
            {{500, 501}, 1, "newer copy"},
            {{std::nullopt, 500}, 1, "only the copy"},
            {{0, std::nullopt}, 0, "the epoch is new"},
            {{-1, std::nullopt}, -1, "the time before it is old"},
    };
    for (const auto& test : cases) {
        for (int i = 0; i < 2; ++i) {
            phone().removeNode(kPaths[i]);
            if (test.times[i]) {
                storeConfig(kPaths[i], "{" + kPaths[i], *test.times[i]);
            }
        }
        json = "{";
        EXPECT_EQ(getFileContents(kPaths, 2, raw, json), test.chosen) << test.why;
        EXPECT_EQ(json, test.chosen < 0 ? "{" : "{" + kPaths[test.chosen]) << test.why;
    }
    EXPECT_EQ(log.count(ANDROID_LOG_ERROR, "Cann't find valid config file!"), 1U);
    EXPECT_TRUE(log.has("Load config file(/data/zenta_lib/kelvo.conf) suceessfully!"));
}

TEST_F(ConfigFilesTest, olderFileStandsInForEmptyButNotForBadNewer) {
    storeConfig(kOriginConfig, "{}", 500);
    setFile(kDataConfig, "", 900);
    EXPECT_EQ(getFileContents(kPaths, 2, raw, json), 0);
    EXPECT_EQ(raw, common::encryptConfig("{}"));
    setFile(kDataConfig, R"({"plain":1})", 501);
    EXPECT_EQ(getFileContents(kPaths, 2, raw, json), -1);
    EXPECT_EQ(log.count(ANDROID_LOG_ERROR, "Read config file failed!"), 1U);
    phone().addFolder("/newer");  // has a size, but read() refuses it
    const std::string paths[] = {kOriginConfig, "/newer", kOriginConfig};
    EXPECT_EQ(getFileContents(paths, 3, raw, json), -1);
    EXPECT_TRUE(log.has("It's a newer config, read it"));
    EXPECT_TRUE(log.has("It's an older config, skip."));
    EXPECT_TRUE(log.has("Cann't find valid config file!"));
}
