#include "sim/tree/PhoneTree.h"

#include <gtest/gtest.h>
#include <stdlib.h>
#include <sys/stat.h>

#include "common/ConfigStore.h"
#include "sim/scenario/PhonePaths.h"
#include "sim/scenario/ScenarioParser.h"

namespace {

constexpr const char* kScenario = R"({"duration": 9,
    "properties": {"a.b": "c"},
    "nodes": {"/sys/devices/soc0/soc_id": "457", "/sys/devices/soc0/raw_version": "2",
              "/raw": {"hex": "0001"}},
    "zones": [{"type": "cpu", "temp": 30000}, {"type": "board", "temp": null}]})";

struct PhoneTree : testing::Test {
    PhoneTree() : mTree(getenv("KELVO_ROOT")), mScenario(sim::parseScenario(kScenario, "s", ".")) {}

    /** Seconds since the epoch at which a node was last changed. */
    int64_t changed(std::string_view path) const {
        struct stat info {};
        return stat(mTree.hostPath(path).c_str(), &info) == 0 ? info.st_mtime : -1;
    }
    std::optional<std::string> temp(int32_t zone) const {
        return mTree.node(sim::zonePath(zone, "temp"));
    }

    sim::DeviceTree mTree;
    sim::Scenario mScenario;
};

TEST_F(PhoneTree, buildsWhatTheScenarioSays) {
    mScenario.config = {"{main}", "{data}", "{sub}"};
    sim::PhoneTree(mTree, mScenario).build();
    EXPECT_EQ(mTree.property("a.b"), "c");
    EXPECT_EQ(mTree.node("/raw"), std::string("\0\1", 2));
    EXPECT_EQ(mTree.node("/sys/class/thermal/thermal_zone1/type"), "board\n");
    EXPECT_EQ(temp(0), "30000\n");
    EXPECT_EQ(temp(1), std::nullopt);
    EXPECT_EQ(mTree.node("/proc/shell-temp"), "");
    const int64_t start = mScenario.startNs / 1000000000;
    for (const auto& [path, json] :
         {std::pair{"/system_ext/etc/kelvo/kelvo.conf", "{main}"},
          std::pair{"/data/zenta_lib/kelvo.conf", "{data}"},
          std::pair{"/system_ext/etc/kelvo/kelvo_SM8450.conf", "{sub}"}}) {
        EXPECT_EQ(mTree.node(path), common::encryptConfig(json)) << path;
        EXPECT_EQ(changed(path), start) << path;
    }
}

TEST_F(PhoneTree, appliesActionsAndRows) {
    mScenario.config.main = "{}";
    sim::PhoneTree phone(mTree, mScenario);
    phone.build();
    phone.apply(sim::SetZones{{{0, std::nullopt}, {1, 25000}}});
    EXPECT_EQ(temp(0), std::nullopt);
    EXPECT_EQ(temp(1), "25000\n");
    phone.apply(sim::TraceRow{1000, {{0, 5}}, {{"/raw", std::nullopt}}});
    EXPECT_EQ(temp(0), "5\n");
    EXPECT_EQ(mTree.node("/raw"), std::nullopt);
    phone.apply(sim::SetProperties{{{"a.b", "d"}}});
    EXPECT_EQ(mTree.property("a.b"), "d");
    const std::string main(sim::kMainConfigPath);
    phone.apply(sim::SetNodes{{{main, std::nullopt}}}, 2000);
    EXPECT_EQ(changed(main), -1);
    phone.apply(sim::SetNodes{{{main, "new"}}}, 3000);
    EXPECT_EQ(changed(main), mScenario.startNs / 1000000000 + 3);
}

TEST_F(PhoneTree, tellsOfZonesHoweverTheyAreSet) {
    sim::PhoneTree phone(mTree, mScenario);
    phone.build();
    std::vector<std::pair<int32_t, std::optional<int32_t>>> told;
    mTree.setZoneListener(
            [&](int32_t zone, std::optional<int32_t> temp) { told.emplace_back(zone, temp); });
    const std::string path = sim::zonePath(1, "temp");
    phone.apply(sim::SetZones{{{0, 30000}, {1, 25000}}});
    phone.apply(sim::SetNodes{{{path, "26500"}, {"/raw", "1"}}}, 0);
    phone.apply(sim::ZoneChange{1, 26500});  // the same figure, but not the same text
    EXPECT_EQ(temp(1), "26500\n");
    phone.apply(sim::SetNodes{{{path, std::nullopt}}}, 0);
    phone.apply(sim::ZoneChange{1, 9});
    EXPECT_EQ(temp(1), "9\n");
    const std::vector<std::pair<int32_t, std::optional<int32_t>>> expected{
            {0, 30000}, {1, std::nullopt}, {1, 25000}, {1, 26500}, {1, std::nullopt}, {1, 9}};
    EXPECT_EQ(told, expected);
}

TEST_F(PhoneTree, leavesShellTempToTheHook) {
    std::vector<bool> calls;
    sim::PhoneTree phone(mTree, mScenario, [&](bool present) { calls.push_back(present); });
    phone.build();
    phone.apply(sim::SetNodes{{{"/proc/shell-temp", std::nullopt}}}, 0);
    EXPECT_EQ(calls, (std::vector{true, false}));
    phone.apply(sim::SetNodes{{{"/proc/shell-temp", ""}}}, 0);
    EXPECT_EQ(calls, (std::vector{true, false, true}));
    EXPECT_EQ(mTree.node("/proc/shell-temp"), std::nullopt);
}

TEST_F(PhoneTree, leavesOutWhatTheScenarioDoesNotHave) {
    mScenario.nodes.push_back({"/proc/shell-temp", std::nullopt});
    sim::PhoneTree phone(mTree, mScenario);
    phone.build();
    for (const auto path : {sim::kShellTempPath, sim::kMainConfigPath, sim::kDataConfigPath}) {
        EXPECT_EQ(mTree.node(path), std::nullopt) << path;
    }
}

TEST(ConfigStore, addsTheLeastFiller) {
    EXPECT_EQ(common::encryptConfig(std::string(12, 'x')).size(), 16U);
    EXPECT_EQ(common::encryptConfig(std::string(13, 'x')).size(), 32U);
}

TEST_F(PhoneTree, lettingThePlantDriveKeepsUnreadableZonesSo) {
    sim::PlantParams params;
    params.ambient = {{{0, 20}}};
    params.nodes = {{"n", 1, 41.5}};
    params.zones = {{0, "cpu", 0, 0, 1, 0}};
    mScenario.plant = params;
    sim::PhoneTree phone(mTree, mScenario);
    phone.build();
    EXPECT_EQ(temp(0), "41500\n");
    const sim::Plant plant(params);
    phone.apply(sim::SetZones{{{0, std::nullopt}}});
    phone.apply(plant);
    EXPECT_EQ(temp(0), std::nullopt);
    phone.apply(sim::SetZones{{{0, 1}}});
    phone.apply(plant);
    EXPECT_EQ(temp(0), "41500\n");
}

TEST(PlatformOf, readsTheNodesAsTheDaemonDoes) {
    const std::string record("\x14\0\0\0\x07\x09\0\0\0\x8a\0\0\0\xca\0\0\0\0\0\0", 20);
    const std::pair<std::vector<sim::NodeChange>, const char*> cases[] = {
            {{}, ""},
            {{{"/sys/devices/soc0/soc_id", "519\n"}, {"/sys/devices/soc0/raw_version", "1"}},
             "SM8550"},
            {{{"/sys/devices/soc0/soc_id", "519"}}, ""},
            {{{"/sys/devices/soc0/soc_id", "7"}, {"/sys/devices/soc0/raw_version", "1"}}, ""},
            {{{"/proc/chip/hw_code", "1066\n"}, {"/proc/chip/hw_subcode", "8a00"}}, "MT6781"},
            {{{"/proc/device-tree/chosen/atag,chipid", record}, {"/proc/chip/hw_code", "1066"}},
             "MT6983"},
    };
    for (const auto& [nodes, platform] : cases) {
        EXPECT_EQ(sim::platformOf(nodes), platform);
    }
}

}  // namespace
