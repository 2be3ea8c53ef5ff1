#include "shelltemp/ZoneTable.h"

#include <gtest/gtest.h>

#include "sim/scenario/PhonePaths.h"
#include "support/Phone.h"

using kelvo::ZoneTable;

namespace {

struct ZoneTableTest : testing::Test {
    sim::DeviceTree tree = phone();
    ZoneTable table;
};

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

TEST_F(ZoneTableTest, trimsTypesAndFindsTheLastZoneOfAShared) {
    tree.setNode(sim::zonePath(0, "type"), " cpu-0-0\n  ");
    tree.addZone(1, "battery", 30000);
    tree.addZone(2, "battery", 31000);
    tree.setNode(sim::zonePath(3, "type"), " \t\v\f\r\n");
    EXPECT_EQ(table.discover(), 3) << "a blank type ends the search";
    EXPECT_EQ(table.indexOf(" cpu-0-0"), 0);
    EXPECT_EQ(table.indexOf("battery"), 2);
}
