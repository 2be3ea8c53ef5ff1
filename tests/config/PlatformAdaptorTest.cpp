#include "config/PlatformAdaptor.h"

#include <gtest/gtest.h>

#include <map>
#include <set>

#include "StoredConfig.h"
#include "config/PlatformTable.h"
#include "core/Connections.h"
#include "core/DataCollector.h"
#include "support/LogCapture.h"

using kelvo::PlatformAdaptor;

namespace {

constexpr char kSocId[] = "/sys/devices/soc0/soc_id";
constexpr char kSocVersion[] = "/sys/devices/soc0/raw_version";
constexpr char kChipNode[] = "/proc/device-tree/chosen/atag,chipid";
const std::string kPowerNode = "/proc/cpufreq/MT_CPU_DVFS_";

// Size, code 2311 and subcode of a chip record whose last two words are missing.
const std::string kShortRecord("\x14\0\0\0\x07\x09\0\0\0\x8a\0", 12);

void expectFound(const std::map<std::string, std::string>& nodes, const char* name, bool isQcom) {
    for (const auto& [path, text] : nodes) {
        phone().setNode(path, text);
    }
    EXPECT_EQ(PlatformAdaptor::getInstance().getPlatformName(), name);
    EXPECT_EQ(PlatformAdaptor::getInstance().isQcom(), isQcom);
}

}  // namespace

TEST(PlatformAdaptor, needsChipVersion) {
    expectFound({{kSocId, "457\n"}}, "", true);
}

TEST(PlatformAdaptor, readsChipNodesAsHexadecimal) {
    LogCapture log;
    expectFound({{"/proc/chip/hw_code", "1066\n"}, {"/proc/chip/hw_subcode", "8a00"}}, "MT6781",
                false);
    EXPECT_TRUE(log.has("platform:4198 35328, project name: \n"));
}

TEST(PlatformAdaptor, emptyChipFolderIsNotQualcomm) {
    expectFound({{"/proc/chip/other", "1"}, {kSocId, "457"}, {kSocVersion, "1"}}, "", false);
}

TEST(PlatformAdaptor, refusesChipZeroOfDeviceTree) {
    expectFound({{kChipNode, std::string(20, '\0')}}, "", false);
}

TEST(PlatformAdaptor, collectsPowerTablesOfDeviceTreeChip) {
    kelvo::connectEngines();
    LogCapture log;
    phone().setNode(kPowerNode + "LL/cpufreq_oppidx",
                    "heading (9, 9)\nheading (8, 8)\n[0] (2000000, 900) (e, 5)\n"
                    "(k, 1)\n(k, 2)\n(s,1)\n(, )\n");
    phone().setNode(kPowerNode + "L/cpufreq_oppidx", "\n\n(k 1)\nk, 1)\n(k, 1\n)k, 1(\n(k), 1\n");
    expectFound({{kChipNode, kShortRecord}}, "MT6983", false);
    const Json::Value data = kelvo::DataCollector::getInstance().getData()["thermal"];
    EXPECT_EQ(data.size(), 1U);
    const Json::Value table = data["MT_CPU_DVFS_LL"];
    EXPECT_EQ(table.size(), 4U);
    EXPECT_EQ(table["2000000"], "900");
    EXPECT_EQ(table["k"], "2");
    EXPECT_EQ(table["s"], "");
    EXPECT_EQ(table[""], "");
    EXPECT_EQ(log.errors("fread error, ret:0\n"), 1U);
    EXPECT_EQ(log.errors("hw_code 1 0x907  0x8a00 V1 node\n"), 1U);
    EXPECT_EQ(log.count(ANDROID_LOG_INFO, "platform:2311 35328, project name: \n"), 1U);
}

TEST(PlatformAdaptor, readsProjectNameTwiceThenItsOlderNode) {
    phone().setNode("/proc/zentaVersion/prjVersion", "Q9\n");
    LogCapture log;
    EXPECT_EQ(PlatformAdaptor::getInstance().getProjectName(), "Q9\n");
    EXPECT_EQ(log.count("open /proc/zentaVersion/prjName failed(No such file or directory)"), 2U);
}

TEST(PlatformTable, namesAndChips) {
    EXPECT_STREQ(kelvo::platformNameAt(0), "MSM8953");
    EXPECT_STREQ(kelvo::platformNameAt(44), "MT6835");
    EXPECT_STREQ(kelvo::platformNameAt(45), "");
    EXPECT_STREQ(kelvo::platformNameAt(-1), "");
    EXPECT_STREQ(kelvo::platformNameAt(kelvo::platformOfChip(519)), "SM8550") << "by place";
    // These have no chip identifier.
    const std::set<int32_t> never = {0, 1, 2, 3, 4, 7, 8, 9};
    for (int32_t i = 0; i < 45; ++i) {
        EXPECT_EQ(kelvo::isDetectablePlatform(kelvo::platformNameAt(i)), !never.contains(i)) << i;
    }
    EXPECT_EQ(kelvo::platformOfChip(1912), kelvo::platformOfChip(1928));
    EXPECT_EQ(kelvo::platformOfChip(458), -1);
}
