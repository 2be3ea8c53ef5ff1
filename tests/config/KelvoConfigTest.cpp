#include "config/KelvoConfig.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include "StoredConfig.h"
#include "support/LogCapture.h"

using kelvo::KelvoConfig;

namespace {

// The text that makes a main file a right one, and member "a".
std::string mainText(int a, const std::string& more = "") {
    return R"({"temp_threshold_down":[],"a":)" + std::to_string(a) + more + "}";
}

uint32_t memberA() {
    uint32_t a = 0;
    EXPECT_EQ(KelvoConfig::getInstance().getConfig(&a, {"a"}), 0);
    return a;
}

class KelvoConfigTest : public testing::Test {
  protected:
    KelvoConfigTest() {
        mPhone.setNode("/sys/devices/soc0/soc_id", "457\n");
        mPhone.setNode("/sys/devices/soc0/raw_version", "1\n");
        mPhone.setNode("/proc/zentaVersion/prjName", "Q1");
    }

    sim::DeviceTree mPhone = phone();
    LogCapture mLog;
};

}  // namespace

TEST_F(KelvoConfigTest, mergesMainFileWithSubFile) {
    storeConfig(kOriginConfig, mainText(0, R"(,"b":1,"Q1,Q2":{"b":2})"), 500);
    storeConfig(kSubConfig, R"({"a":3,"Q1":{"c":4}})", 1);
    EXPECT_EQ(memberA(), 3U);
    Json::Value all;
    ASSERT_EQ(KelvoConfig::getInstance().getConfig(&all, {}), 0);
    EXPECT_EQ(all["b"], 2);
    EXPECT_EQ(all["c"], 4);
    EXPECT_EQ(mLog.count(ANDROID_LOG_ERROR, "reload from keyName: Q1,Q2"), 1U);
    EXPECT_EQ(
            mLog.count(ANDROID_LOG_DEBUG, "getKelvoConfig, overrided by platform:SM8450 subconfig"),
            1U);
}

TEST_F(KelvoConfigTest, dataCopyWinsATieAndHasNoSubFile) {
    storeConfig(kOriginConfig, mainText(0), 500);
    storeConfig(kDataConfig, mainText(1), 500);
    storeConfig(kSubConfig, R"({"a":3})", 500);
    EXPECT_EQ(memberA(), 1U);
}

TEST_F(KelvoConfigTest, originReplacesWrongDataCopyStillWithoutSubFile) {
    storeConfig(kOriginConfig, mainText(0), 500);
    storeConfig(kDataConfig, R"({"a":1})", 501);
    storeConfig(kSubConfig, R"({"a":3})", 500);
    EXPECT_EQ(memberA(), 0U);
    EXPECT_EQ(mLog.count(ANDROID_LOG_ERROR, "config file is wrong! try to load origin config"), 1U);
}

TEST_F(KelvoConfigTest, badSubFileIsNone) {
    storeConfig(kOriginConfig, mainText(0), 500);
    storeConfig(kSubConfig, R"({"a":3)", 500);
    EXPECT_EQ(memberA(), 0U);
    EXPECT_EQ(mLog.count(ANDROID_LOG_ERROR, "Parse sub config file failed!"), 1U);
    setFile(kSubConfig, "no blocks", 500);
    EXPECT_EQ(KelvoConfig::getInstance().reload(), 0);
    EXPECT_EQ(mLog.count(ANDROID_LOG_ERROR, "Get sub file contents failed!"), 1U);
    mPhone.removeNode(kSubConfig);
    EXPECT_EQ(KelvoConfig::getInstance().reload(), 0);
    EXPECT_EQ(mLog.count(ANDROID_LOG_ERROR,
                         std::string("stat ") + kSubConfig +
                                 " failed(No such file or directory), no sub config file..."),
              1U);
}

TEST_F(KelvoConfigTest, keepsOldDocumentWhenReloadFails) {
    storeConfig(kOriginConfig, mainText(0), 500);
    KelvoConfig& config = KelvoConfig::getInstance();
    storeConfig(kOriginConfig, mainText(1).substr(0, 30), 501);
    EXPECT_EQ(config.reload(), -1);
    EXPECT_EQ(mLog.count(ANDROID_LOG_ERROR, "Parse config file failed!"), 1U);
    storeConfig(kOriginConfig, "{\"temp_threshold_down\":" + std::string(5000, '['), 501);
    EXPECT_EQ(config.reload(), -1);
    EXPECT_EQ(mLog.count(ANDROID_LOG_ERROR, "Parse config file failed!"), 2U);
    mPhone.removeNode(kOriginConfig);
    EXPECT_EQ(config.reload(), -1);
    EXPECT_EQ(mLog.count(ANDROID_LOG_ERROR, "Get file contents failed!"), 1U);
    EXPECT_EQ(memberA(), 0U);
    storeConfig(kOriginConfig, mainText(2), 400);
    EXPECT_EQ(config.reload(), 0);
    EXPECT_EQ(memberA(), 2U);
}

TEST_F(KelvoConfigTest, everyLookupFailsWithoutAFile) {
    Json::Value value = 5;
    EXPECT_EQ(KelvoConfig::getInstance().getConfig(&value, {"a"}), -1);
    EXPECT_EQ(value, 5);
    EXPECT_EQ(KelvoConfig::getInstance().getConfig(&value, {}), 0);
    EXPECT_TRUE(value.isNull());
}

TEST_F(KelvoConfigTest, looksUpUnsignedNumbers) {
    storeConfig(kOriginConfig,
                mainText(0, R"(,"big":4294967295,"over":4294967296,"minus":-1,"half":0.5,
                            "whole":7.0,"text":"7","nothing":null,"in":{"n":8},"list":[1]})"),
                500);
    const KelvoConfig& config = KelvoConfig::getInstance();
    uint32_t number = 0;
    EXPECT_EQ(config.getConfig(&number, {"big"}), 0);
    EXPECT_EQ(number, 4294967295U);
    EXPECT_EQ(config.getConfig(&number, {"whole"}), 0);
    EXPECT_EQ(number, 7U);
    EXPECT_EQ(config.getConfig(&number, {"in", "n"}), 0);
    EXPECT_EQ(number, 8U);
    mLog.clear();
    for (const char* key : {"nothing", "missing"}) {
        EXPECT_EQ(config.getConfig(&number, {key}), -1) << key;
    }
    EXPECT_TRUE(mLog.lines().empty());
    for (const char* key : {"over", "minus", "half", "text", "in"}) {
        EXPECT_EQ(config.getConfig(&number, {key}), -1) << key;
    }
    EXPECT_EQ(mLog.count(ANDROID_LOG_ERROR, "-1\n is not uint"), 1U);
    EXPECT_EQ(number, 8U);
}

TEST_F(KelvoConfigTest, pathThroughANumberFailsAndIsReportedOnce) {
    storeConfig(kOriginConfig, mainText(0, R"(,"list":[{"x":1}])"), 500);
    const KelvoConfig& config = KelvoConfig::getInstance();
    mLog.clear();
    Json::Value value;
    for (int i = 0; i < 3; ++i) {
        EXPECT_EQ(config.getConfig(&value, {"list", "x", "y"}), -1);
        EXPECT_EQ(config.getConfig(&value, {"a", "x"}), -1);
    }
    EXPECT_EQ(mLog.lines().size(), 2U);
}
