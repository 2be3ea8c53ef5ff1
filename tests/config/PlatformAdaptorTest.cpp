#include "config/PlatformAdaptor.h"

#include <gtest/gtest.h>

#include <map>
#include <ostream>
#include <sstream>

#include "StoredConfig.h"
#include "config/ConfigText.h"
#include "config/CpuPowerTable.h"
#include "config/PlatformTable.h"
#include "core/DataCollector.h"
#include "support/LogCapture.h"

using kelvo::PlatformAdaptor;

namespace {

constexpr char kChipNode[] = "/proc/device-tree/chosen/atag,chipid";
constexpr char kTable[] = "heading (9, 9)\nheading\n[0] (2000000, 900)\n";

std::string chipRecord(uint32_t hwCode) {
    return littleEndian(20) + littleEndian(hwCode) + littleEndian(0x8a00) + littleEndian(0) +
           littleEndian(0);
}

struct PlatformRow {
    const char* what;
    std::map<std::string, std::string> nodes;
    int32_t platform;
    const char* name;
    bool isQcom;
};

void PrintTo(const PlatformRow& row, std::ostream* out) {
    *out << row.what;
}

class PlatformAdaptorKind : public testing::TestWithParam<PlatformRow> {};

}  // namespace

TEST_P(PlatformAdaptorKind, isFound) {
    const PlatformRow& row = GetParam();
    sim::DeviceTree tree = phone();
    tree.setNode("/proc/zentaVersion/prjName", "Q1\n");
    tree.setNode("/proc/cpufreq/MT_CPU_DVFS_B/cpufreq_oppidx", kTable);
    for (const auto& [path, text] : row.nodes) {
        tree.setNode(path, text);
    }
    const PlatformAdaptor& adaptor = PlatformAdaptor::getInstance();
    EXPECT_EQ(adaptor.getPlatform(), row.platform);
    EXPECT_EQ(adaptor.getPlatformName(), row.name);
    EXPECT_EQ(adaptor.isQcom(), row.isQcom);
    EXPECT_EQ(adaptor.getProjectName(), "Q1\n");
    const bool isDeviceTree = row.nodes.contains(kChipNode) && row.platform >= 0;
    EXPECT_EQ(kelvo::DataCollector::getInstance().getData().isNull(), !isDeviceTree);
}

INSTANTIATE_TEST_SUITE_P(
        Rows, PlatformAdaptorKind,
        testing::Values(
                PlatformRow{"qualcomm",
                            {{"/sys/devices/soc0/soc_id", "457\n"},
                             {"/sys/devices/soc0/raw_version", "1\n"}},
                            34,
                            "SM8450",
                            true},
                PlatformRow{"oddRecord",
                            {{"/sys/devices/soc0/soc_id", "519"},
                             {"/sys/devices/soc0/raw_version", "1"}},
                            40,
                            "SM8550",
                            true},
                PlatformRow{"noSubId", {{"/sys/devices/soc0/soc_id", "457\n"}}, -1, "", true},
                PlatformRow{"unknownChip",
                            {{"/sys/devices/soc0/soc_id", "458"},
                             {"/sys/devices/soc0/raw_version", "1"}},
                            -1,
                            "",
                            true},
                PlatformRow{"chipNodesAreHexadecimal",
                            {{"/proc/chip/hw_code", "1066\n"}, {"/proc/chip/hw_subcode", "8a00"}},
                            33,
                            "MT6781",
                            false},
                PlatformRow{"emptyChipFolder", {{"/proc/chip/other", "1"}}, -1, "", false},
                PlatformRow{"deviceTree", {{kChipNode, chipRecord(2311)}}, 36, "MT6983", false},
                PlatformRow{"deviceTreeZero", {{kChipNode, chipRecord(0)}}, -1, "", false}),
        [](const auto& row) { return row.param.what; });

TEST(PlatformAdaptor, collectsPowerTablesOfDeviceTreeChip) {
    sim::DeviceTree tree = phone();
    tree.setNode(kChipNode, chipRecord(2311));
    tree.setNode("/proc/cpufreq/MT_CPU_DVFS_LL/cpufreq_oppidx", kTable);
    tree.setNode("/proc/cpufreq/MT_CPU_DVFS_L/cpufreq_oppidx", "one\ntwo\n");
    tree.setNode("/d/static_power", "42\n");
    LogCapture log;
    PlatformAdaptor::getInstance();
    const Json::Value data = kelvo::DataCollector::getInstance().getData();
    EXPECT_EQ(data["thermal"]["MT_CPU_DVFS_LL"]["2000000"], "900");
    EXPECT_EQ(data["thermal"]["d_static_power"]["static_power"], "42\n");
    EXPECT_EQ(data["thermal"].size(), 2U);
    EXPECT_EQ(log.count(ANDROID_LOG_ERROR, "mtk platform"), 1U);
    EXPECT_EQ(log.count(ANDROID_LOG_INFO, "DC: d_static_power: 42\n"), 1U);
    EXPECT_EQ(log.count(ANDROID_LOG_INFO, "platform:2311 35328, project name: \n"), 1U);
}

TEST(PlatformAdaptor, readsProjectNameTwiceThenItsOlderNode) {
    phone().setNode("/proc/zentaVersion/prjVersion", "Q9");
    LogCapture log;
    EXPECT_EQ(PlatformAdaptor::getInstance().getProjectName(), "Q9");
    EXPECT_EQ(log.count("open /proc/zentaVersion/prjName failed(No such file or directory)"), 2U);
}

TEST(PlatformTable, namesAndChips) {
    EXPECT_STREQ(kelvo::platformNameAt(0), "MSM8953");
    EXPECT_STREQ(kelvo::platformNameAt(44), "MT6835");
    EXPECT_STREQ(kelvo::platformNameAt(45), "");
    EXPECT_STREQ(kelvo::platformNameAt(-1), "");
    std::map<int32_t, int> chipsOfPlatform;
    for (int32_t chip = -1; chip < 10000; ++chip) {
        ++chipsOfPlatform[kelvo::platformOfChip(chip)];
    }
    // 38 chips for 37 platforms: two are MT6771.
    EXPECT_EQ(chipsOfPlatform[5], 2);
    EXPECT_EQ(chipsOfPlatform[-1], 10001 - 38);
    EXPECT_EQ(chipsOfPlatform.size(), 1U + 37U);
    for (const int32_t never : {0, 1, 2, 3, 4, 7, 8, 9}) {
        EXPECT_FALSE(chipsOfPlatform.contains(never));
        EXPECT_FALSE(kelvo::isDetectablePlatform(kelvo::platformNameAt(never)));
    }
}

TEST(CpuPowerTable, takesEntriesAfterTheHeading) {
    const std::pair<const char*, const char*> rows[] = {
            {"(a, 1)\n(b, 2)\n(c, 3)\nx (d, 4) (e, 5)\n", R"({"c":"3","d":"4"})"},
            {"\n\n(k, 1)\n(k, 2)", R"({"k":"2"})"},
            {"\n\n(k,1)\n(, )\n", R"({"k":"","":""})"},
            {"\n\n(k 1)\nk, 1)\n(k, 1\n)k, 1(\n(k), 1\n", "null"},
            {"one\ntwo\n", "null"},
            {"", "null"},
    };
    for (const auto& [text, expected] : rows) {
        std::istringstream in(text);
        Json::Value table;
        EXPECT_EQ(kelvo::parseCpuPowerTable(in, table), std::string(expected) == "null" ? -1 : 0);
        Json::Value wanted;
        kelvo::parseConfigText(expected, wanted);
        EXPECT_EQ(table, wanted) << text;
    }
}
