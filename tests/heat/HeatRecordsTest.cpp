#include "heat/HeatRecords.h"

#include <gtest/gtest.h>

using kelvo::HeatRecords;
using kelvo::updateCompRawData;

TEST(HeatRecordsTest, foldsHeatsOfAKey) {
    HeatRecords records;
    updateCompRawData("a", records, {{CPU, 10}, {GPU, -7}}, 3, 20);
    updateCompRawData("a", records, {{CPU, 5}, {WIFI, 2}}, -1, 20);
    updateCompRawData("a", records, {{CPU, 12}, {GPU, -9}}, 4, 20);
    updateCompRawData("", records, {{CPU, 1}}, 1, 20);
    updateCompRawData("b", records, {}, -1, 20);
    ASSERT_EQ(records.size(), 2U);
    EXPECT_EQ(records["a"].count, 3);
    EXPECT_EQ(records["a"].levelSum, 7) << "-1 is no level";
    EXPECT_EQ(records["b"].levelSum, 0);
    Json::Value out(Json::objectValue);
    addHeatValues(records["a"], out);
    EXPECT_EQ(out.size(), 12U);
    EXPECT_EQ(out["maxhv_cpu"], 12);
    EXPECT_EQ(out["avghv_cpu"], 9);
    EXPECT_EQ(out["maxhv_gpu"], 0) << "0 where the update named no heat";
    EXPECT_EQ(out["avghv_gpu"], -5) << "truncated toward zero";
    EXPECT_EQ(out["maxhv_wifi"], 2);
    EXPECT_EQ(out["avghv_ambient"], 0);
    updateCompRawData("c", records, {{CPU, -4}}, 0, 20);
    EXPECT_EQ(records["c"].heatMax[CPU], -4) << "a first maximum may be negative";
    EXPECT_EQ(kelvo::averageOf(5, 0), 0);
}

TEST(HeatRecordsTest, keepsOneMoreThanItsNumberAndGoesOnWithThose) {
    HeatRecords packages;
    for (int round = 0; round < 2; ++round) {
        for (int i = 1; i <= 22; ++i) {
            updateCompRawData("p" + std::to_string(i), packages, {}, 0, 20);
        }
    }
    EXPECT_EQ(packages.size(), 21U);
    EXPECT_EQ(packages.count("p22"), 0U) << "the 22nd";
    EXPECT_EQ(packages["p21"].count, 2);
}
