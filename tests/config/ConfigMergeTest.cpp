#include "config/ConfigMerge.h"

#include <gtest/gtest.h>
#include <json/writer.h>

#include <ostream>

#include "config/ConfigText.h"

namespace {

Json::Value json(const std::string& text) {
    Json::Value value;
    EXPECT_EQ(kelvo::parseConfigText(text, value), 0) << text;
    return value;
}

struct UpdateRow {
    const char* destination;
    const char* source;
    const char* result;
};

struct MergeRow {
    const char* what;
    const char* main;
    const char* sub;
    const char* project;
    int a;  // what member "a" must be in the end
};

void PrintTo(const MergeRow& row, std::ostream* out) {
    *out << row.what;
}

constexpr char kFullMain[] = R"({"a":0,"P":{"a":1},"Q":{"a":2},"Q,R":{"a":3},"S,T":{"a":9}})";

class ConfigMergePrecedence : public testing::TestWithParam<MergeRow> {};

}  // namespace

TEST(ConfigMerge, updateJsonMergesDeeply) {
    const UpdateRow rows[] = {
            {R"({"a":1})", R"({"b":2})", R"({"a":1,"b":2})"},
            {R"({"a":1})", R"({"a":null,"b":null})", R"({"a":1})"},
            {R"({"a":{"x":1,"y":2}})", R"({"a":{"y":3,"x":null}})", R"({"a":{"x":1,"y":3}})"},
            {R"({"a":[1,2,3]})", R"({"a":[4]})", R"({"a":[4]})"},
            {R"({"a":{"x":1}})", R"({"a":[1]})", R"({"a":[1]})"},
            {R"({"a":5})", R"({"a":{"x":1}})", R"({"a":{"x":1}})"},
            {R"({"a":null})", R"({"a":{"x":null}})", R"({"a":{"x":null}})"},
            {R"([1])", R"({"a":1})", R"([1])"},
            {R"({"a":1})", R"([1])", R"({"a":1})"},
    };
    for (const UpdateRow& row : rows) {
        Json::Value destination = json(row.destination);
        EXPECT_EQ(kelvo::updateJson(destination, json(row.source)), 0);
        EXPECT_EQ(destination, json(row.result)) << row.destination << " + " << row.source;
    }
}

TEST_P(ConfigMergePrecedence, holds) {
    const MergeRow& row = GetParam();
    Json::Value root = json(row.main);
    kelvo::mergeConfig(root, json(row.sub), "P", row.project, nullptr);
    EXPECT_EQ(root["a"], row.a) << root;
}

INSTANTIATE_TEST_SUITE_P(
        Rows, ConfigMergePrecedence,
        testing::Values(
                MergeRow{"platform", R"({"a":0,"P":{"a":1},"Q":{"a":2}})", "null", "", 1},
                MergeRow{"otherPlatform", R"({"a":0,"P2":{"a":1}})", "null", "Q", 0},
                MergeRow{"project", R"({"a":0,"P":{"a":1},"Q":{"a":2}})", "null", "Q", 2},
                MergeRow{"groupBeatsProject", kFullMain, "null", "Q", 3},
                MergeRow{"otherNameOfGroup", kFullMain, "null", "R", 3},
                MergeRow{"secondGroup", kFullMain, "null", "T", 9},
                MergeRow{"projectKeepsItsNewline", kFullMain, "null", "Q\n", 1},
                MergeRow{"emptyPieceNamesUnknownProject", R"({"a":0,"S,,T":{"a":4}})", "null", "",
                         4},
                MergeRow{"subFile", kFullMain, R"({"a":10})", "Q", 10},
                MergeRow{"subProject", kFullMain, R"({"a":10,"Q":{"a":11}})", "Q", 11},
                MergeRow{"subProjectHidesSubGroup", kFullMain,
                         R"({"a":10,"Q":{"a":11},"Q,R":{"a":12}})", "Q", 11},
                MergeRow{"subGroup", kFullMain, R"({"a":10,"Q":null,"Q,R":{"a":12}})", "Q", 12},
                MergeRow{"subGroupNeedsProject", kFullMain, R"({"a":10,",":{"a":12}})", "", 10},
                MergeRow{"sectionMadeByPlatform", R"({"a":0,"P":{"Q":{"a":5}}})", "null", "Q", 5},
                MergeRow{"sectionIsNoObject", R"({"a":0,"P":7,"Q":[1],"Q,R":"x"})", R"({"Q":true})",
                         "Q", 0},
                MergeRow{"nullSections", R"({"a":0,"P":null,"Q":null,"Q,R":null})", "null", "Q", 0},
                MergeRow{"sectionsInThemselves", R"({"P":{"a":6,"P":{"a":7,"P":null}}})", "null",
                         "Q", 6}),
        [](const auto& row) { return row.param.what; });

TEST(ConfigMerge, unknownPlatformHasNoSubFileButTheEmptyNamesSection) {
    Json::Value root = json(R"({"a":0,"":{"a":1}})");
    kelvo::mergeConfig(root, json(R"({"a":2})"), "", "Q", nullptr);
    EXPECT_EQ(root["a"], 1);
}

TEST(ConfigMerge, sectionsStayInTheDocument) {
    Json::Value root = json(kFullMain);
    kelvo::mergeConfig(root, Json::Value(), "P", "Q", nullptr);
    EXPECT_EQ(root["P"], json(R"({"a":1})"));
    EXPECT_EQ(root.size(), 5U);
}
