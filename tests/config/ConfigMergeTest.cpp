#include "config/ConfigMerge.h"

#include <gtest/gtest.h>
#include <json/writer.h>

#include "config/ConfigText.h"

namespace {

Json::Value parse(const std::string& text) {
    Json::Value value;
    EXPECT_EQ(kelvo::parseConfigText(text, value), 0) << text;
    return value;
}

constexpr char kFullMain[] = R"({"a":0,"P":{"a":1},"Q":{"a":2},"Q,R":{"a":3},"S,T":{"a":9}})";

}  // namespace

TEST(ConfigMerge, laterSectionsWin) {
    // why, main, sub, project, a (what member "a" must be in the end)
    const std::tuple<const char*, const char*, const char*, const char*, const char*> cases[] = {
            {"project", R"({"a":0,"P":{"a":1},"Q":{"a":2}})", "null", "Q", "2"},
            {"group beats project", kFullMain, "null", "Q", "3"},
            {"other name of group", kFullMain, "null", "R", "3"},
            {"project keeps its newline", kFullMain, "null", "Q\n", "1"},
            {"empty piece names unknown project", R"({"a":0,"S,,T":{"a":4}})", "null", "", "4"},
            {"sub-project hides group", kFullMain, R"({"Q":{"a":11},"Q,R":{"a":12}})", "Q", "11"},
            {"sub-group", kFullMain, R"({"a":10,"Q":null,"Q,R":{"a":12}})", "Q", "12"},
            {"sub-group needs project", kFullMain, R"({"a":10,",":{"a":12}})", "", "10"},
            {"section made by platform", R"({"a":0,"P":{"Q":{"a":5}}})", "null", "Q", "5"},
            {"no objects", R"({"a":0,"P":7,"Q":[1],"Q,R":"x"})", R"({"Q":true})", "Q", "0"},
            {"sections in themselves", R"({"P":{"a":6,"P":{"a":7,"P":null}}})", "null", "Q", "6"},
            {"null is skipped", R"({"a":1})", R"({"a":null})", "", "1"},
            {"deep", R"({"a":{"x":1,"y":2}})", R"({"a":{"y":3,"x":null}})", "", R"({"x":1,"y":3})"},
            {"array", R"({"a":[1,2,3]})", R"({"a":[4]})", "", "[4]"},
            {"object for number", R"({"a":5})", R"({"a":{"x":1}})", "", R"({"x":1})"},
            {"object taken whole", "{}", R"({"a":{"x":null}})", "", R"({"x":null})"},
    };
    for (const auto& [why, main, sub, project, a] : cases) {
        Json::Value root = parse(main);
        kelvo::mergeConfig(root, parse(sub), "P", project, nullptr);
        EXPECT_EQ(root["a"], parse(a)) << why << root;
    }
}

TEST(ConfigMerge, unknownPlatformHasNoSubFileButTheEmptyNamesSection) {
    Json::Value root = parse(R"({"a":0,"":{"a":1}})");
    kelvo::mergeConfig(root, parse(R"({"a":2})"), "", "Q", nullptr);
    EXPECT_EQ(root, parse(R"({"a":1,"":{"a":1}})")) << "sections stay in the document";
}
