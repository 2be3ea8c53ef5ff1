#include "shelltemp/ZoneTable.h"

#include <gtest/gtest.h>
#include <json/reader.h>
#include <stdlib.h>

#include "sim/DeviceTree.h"

using kelvo::ZoneTable;

namespace {

class ZoneTableTest : public testing::Test {
  protected:
    sim::DeviceTree tree{getenv("KELVO_ROOT")};
    ZoneTable table;
};

Json::Value parse(const std::string& text) {
    Json::Value value;
    EXPECT_TRUE(Json::Reader().parse(text, value));
    return value;
}

}  // namespace

TEST_F(ZoneTableTest, stopsAtTheFirstGap) {
    for (const int32_t index : {0, 1, 2, 4}) {
        tree.addZone(index, "zone" + std::to_string(index), 40000);
    }
    EXPECT_EQ(table.discover(), 3);
    EXPECT_EQ(table.indexOf("zone2"), 2);
    EXPECT_EQ(table.indexOf("zone4"), -1);
    EXPECT_EQ(table.typeOf(2), "zone2");
    EXPECT_EQ(table.typeOf(3), "");
    EXPECT_EQ(table.typeOf(-1), "");
}

TEST_F(ZoneTableTest, trimsWhiteSpaceAfterTheTypeOnly) {
    tree.setNode(sim::DeviceTree::zonePath(0, "type"), " cpu-0-0\n  ");
    tree.setNode(sim::DeviceTree::zonePath(1, "type"), " \t\v\f\r\n");
    EXPECT_EQ(table.discover(), 1) << "a blank type ends the search";
    EXPECT_EQ(table.indexOf(" cpu-0-0"), 0);
}

TEST_F(ZoneTableTest, findsTheLastZoneOfASharedType) {
    tree.addZone(0, "battery", 30000);
    tree.addZone(1, "battery", 31000);
    EXPECT_EQ(table.discover(), 2);
    EXPECT_EQ(table.indexOf("battery"), 1);
    EXPECT_EQ(table.typeOf(0), "battery");
}

TEST_F(ZoneTableTest, resolvesAListUpToTheFirstUnknownType) {
    tree.addZone(0, "cpu", 40000);
    tree.addZone(1, "gpu", 40000);
    table.discover();
    const struct {
        const char* info;
        size_t known;
        std::optional<std::string> unknown;
    } cases[] = {
            {R"({"thermal_zone_type":["gpu","cpu"]})", 2, std::nullopt},
            {R"({"thermal_zone_type":["gpu","none","cpu"]})", 1, "\"none\"\n"},
            {R"({"thermal_zone_type":[1]})", 0, "1\n"},
            {R"({"thermal_zone_type":"gpu"})", 0, std::nullopt},
            {R"({})", 0, std::nullopt},
            {R"([])", 0, std::nullopt},
    };
    for (const auto& test : cases) {
        const kelvo::ZoneList list = kelvo::resolveZoneList(parse(test.info), table);
        EXPECT_EQ(list.zones.size(), test.known) << test.info;
        EXPECT_EQ(list.unknownType, test.unknown) << test.info;
    }
}
