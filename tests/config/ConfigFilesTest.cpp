#include "config/ConfigFiles.h"

#include <gtest/gtest.h>

#include "StoredConfig.h"
#include "support/LogCapture.h"

using kelvo::getFileContents;

namespace {

const std::string kPaths[] = {kOriginConfig, kDataConfig};

struct ConfigFilesTest : testing::Test {
    std::string raw;
    std::string json;
    LogCapture log;
};

}  // namespace

TEST_F(ConfigFilesTest, takesNewest) {
    // times of the candidates that are there, chosen, why
    using Times = std::array<std::optional<time_t>, 2>;
    const std::tuple<Times, int, const char*> cases[] = {
            {Times{500, 500}, 1, "a tie goes to the later candidate"},
            {Times{501, 500}, 0, "older copy"},
            {Times{500, 501}, 1, "newer copy"},
            {Times{std::nullopt, 500}, 1, "only the copy"},
            {Times{0, std::nullopt}, 0, "the epoch is new"},
            {Times{-1, std::nullopt}, -1, "the time before it is old"},
    };
    for (const auto& [times, chosen, why] : cases) {
        for (size_t i = 0; i < times.size(); ++i) {
            phone().removeNode(kPaths[i]);
            if (times[i]) {
                storeConfig(kPaths[i], "{" + kPaths[i], *times[i]);
            }
        }
        json = "{";
        EXPECT_EQ(getFileContents(kPaths, 2, raw, json), chosen) << why;
        EXPECT_EQ(json, chosen < 0 ? "{" : "{" + kPaths[chosen]) << why;
    }
    EXPECT_EQ(log.errors("Cann't find valid config file!"), 1U);
    EXPECT_TRUE(log.has("Load config file(/data/zenta_lib/kelvo.conf) suceessfully!"));
}

TEST_F(ConfigFilesTest, olderFileStandsInForEmptyButNotForBadNewer) {
    storeConfig(kOriginConfig, "{}", 500);
    setFile(kDataConfig, "", 900);
    EXPECT_EQ(getFileContents(kPaths, 2, raw, json), 0);
    EXPECT_EQ(raw, common::encryptConfig("{}"));
    setFile(kDataConfig, "{", 501);
    EXPECT_EQ(getFileContents(kPaths, 2, raw, json), -1);
    EXPECT_EQ(log.errors("Read config file failed!"), 1U);
    phone().addFolder("/newer");  // has a size, but read() refuses it
    const std::string paths[] = {kOriginConfig, "/newer", kOriginConfig};
    EXPECT_EQ(getFileContents(paths, 3, raw, json), -1);
    EXPECT_TRUE(log.has("It's a newer config, read it"));
    EXPECT_TRUE(log.has("It's an older config, skip."));
    EXPECT_TRUE(log.has("Cann't find valid config file!"));
}
