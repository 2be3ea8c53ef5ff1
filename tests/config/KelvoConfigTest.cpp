#include "config/KelvoConfig.h"

#include <gtest/gtest.h>

#include "StoredConfig.h"
#include "support/LogCapture.h"

using kelvo::KelvoConfig;

namespace {

// A text that passes for a main file, with member "a".
std::string mainText(int a, const std::string& more = "") {
    return R"({"temp_threshold_down":[],"a":)" + std::to_string(a) + more + "}";
}

struct KelvoConfigTest : testing::Test {
    KelvoConfigTest() {
        phone().setNode("/sys/devices/soc0/soc_id", "457\n");
        phone().setNode("/sys/devices/soc0/raw_version", "1\n");
        phone().setNode("/proc/zentaVersion/prjName", "Q1");
    }

    static KelvoConfig& config() { return KelvoConfig::getInstance(); }

    static Json::Value valueOf(const char* key) {
        Json::Value value;
        EXPECT_EQ(config().getConfig(&value, {key}), 0) << key;
        return value;
    }

    LogCapture log;
};

}  // namespace

TEST_F(KelvoConfigTest, mergesSubFileUnlessItIsBad) {
    storeConfig(kOriginConfig, mainText(0, R"(,"b":1,"Q1,Q2":{"b":2})"), 500);
    EXPECT_EQ(valueOf("a"), 0);
    EXPECT_EQ(valueOf("b"), 2);
    EXPECT_EQ(log.errors("reload from keyName: Q1,Q2"), 1U);
    EXPECT_EQ(log.errors(std::string("stat ") + kSubConfig +
                         " failed(No such file or directory), no sub config file..."),
              1U);
    storeConfig(kSubConfig, R"({"a":3,"Q1":{"b":4}})", 1);
    EXPECT_EQ(config().reload(), 0);
    EXPECT_EQ(valueOf("a"), 3);
    EXPECT_EQ(valueOf("b"), 4);
    EXPECT_TRUE(log.has("getKelvoConfig, overrided by platform:SM8450 subconfig"));
    storeConfig(kSubConfig, R"({"a":3)", 500);
    EXPECT_EQ(config().reload(), 0);
    EXPECT_EQ(log.errors("Parse sub config file failed!"), 1U);
    EXPECT_EQ(valueOf("a"), 0) << "nothing of it counts";
    setFile(kSubConfig, "no blocks", 500);
    EXPECT_EQ(config().reload(), 0);
    EXPECT_EQ(log.errors("Get sub file contents failed!"), 1U);
    EXPECT_EQ(valueOf("a"), 0);
}

TEST_F(KelvoConfigTest, dataCopyAndOriginInItsPlaceHaveNoSubFile) {
    storeConfig(kOriginConfig, mainText(0), 500);
    storeConfig(kDataConfig, mainText(1), 500);
    storeConfig(kSubConfig, R"({"a":3})", 500);
    EXPECT_EQ(valueOf("a"), 1);
    storeConfig(kDataConfig, R"({"a":1})", 501);
    EXPECT_EQ(config().reload(), 0);
    EXPECT_EQ(valueOf("a"), 0);
    phone().removeNode(kOriginConfig);
    EXPECT_EQ(config().reload(), -1);
    EXPECT_EQ(log.errors("config file is wrong! try to load origin config"), 2U);
    EXPECT_EQ(log.errors("Get file contents failed!"), 1U);
}

TEST_F(KelvoConfigTest, keepsOldDocumentWhenReloadFails) {
    Json::Value value = 5;
    EXPECT_EQ(config().getConfig(&value, {"a"}), -1) << "no file as yet";
    EXPECT_EQ(config().getConfig(&value, {}), 0);
    EXPECT_TRUE(value.isNull());
    storeConfig(kOriginConfig, mainText(2), 400);
    EXPECT_EQ(config().reload(), 0);
    storeConfig(kOriginConfig, "{\"temp_threshold_down\":" + std::string(5000, '['), 501);
    EXPECT_EQ(config().reload(), -1);
    EXPECT_EQ(log.errors("Parse config file failed!"), 1U);
    phone().removeNode(kOriginConfig);
    EXPECT_EQ(config().reload(), -1);
    EXPECT_EQ(log.errors("Get file contents failed!"), 2U);
    EXPECT_EQ(valueOf("a"), 2);
}

TEST_F(KelvoConfigTest, looksUpUnsignedNumbers) {
    storeConfig(kOriginConfig,
                mainText(0, R"(,"big":4294967295,"over":4294967296,"minus":-1,"half":0.5,
                            "text":"7","nothing":null,"in":{"whole":8.0})"),
                500);
    uint32_t number = 0;
    EXPECT_EQ(config().getConfig(&number, {"big"}), 0);
    EXPECT_EQ(number, 4294967295U);
    EXPECT_EQ(config().getConfig(&number, {"in", "whole"}), 0);
    EXPECT_EQ(number, 8U);
    log.clear();
    for (const char* key : {"nothing", "missing", "over", "minus", "half", "text", "in"}) {
        EXPECT_EQ(config().getConfig(&number, {key}), -1) << key;
    }
    EXPECT_EQ(log.errors("-1\n is not uint"), 1U);
    EXPECT_EQ(log.lines().size(), 5U) << "what is null or missing is no error";
    EXPECT_EQ(number, 8U);
}

TEST_F(KelvoConfigTest, pathThroughWhatIsNoObjectFailsAndIsReportedOnce) {
    storeConfig(kOriginConfig, mainText(0), 500);
    Json::Value value;
    for (int i = 0; i < 2; ++i) {
        EXPECT_EQ(config().getConfig(&value, {"a", "x"}), -1);
        EXPECT_EQ(config().getConfig(&value, {"temp_threshold_down", "x"}), -1);
    }
    EXPECT_EQ(log.errors("config path a.x leads through a value that is not an object"), 1U);
}
