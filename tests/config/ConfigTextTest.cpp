#include "config/ConfigText.h"

#include <gtest/gtest.h>

using kelvo::parseConfigText;

namespace {

std::string nested(int depth, const std::string& open, const std::string& inner,
                   const std::string& close) {
    std::string text;
    for (int i = 0; i < depth; ++i) {
        text += open;
    }
    text += inner;
    for (int i = 0; i < depth; ++i) {
        text += close;
    }
    return text;
}

}  // namespace

// Beyond its limit the library would end the process.
TEST(ConfigText, refusesWhatNestsTooDeep) {
    Json::Value root;
    EXPECT_EQ(parseConfigText(nested(1000, "[", "", "]"), root), 0);
    EXPECT_EQ(parseConfigText(nested(999, "[", "1", "]"), root), 0);
    EXPECT_EQ(parseConfigText(nested(999, R"({"a":)", "1", "}"), root), 0);
    kelvo::ConfigTextError error;
    EXPECT_EQ(parseConfigText(nested(1000, "[", "1", "]"), root, &error), -1);
    EXPECT_EQ(error.offset, 1000U);
    EXPECT_EQ(parseConfigText(nested(1000, R"({"a":)", "1", "}"), root), -1);
    EXPECT_EQ(parseConfigText(nested(100000, R"([/*]*/"]\"]",)", "", ""), root), -1);
}

TEST(ConfigText, bracketsInTextsAndCommentsDoNotNest) {
    const std::string brackets(2000, '[');
    Json::Value root;
    EXPECT_EQ(parseConfigText("{/*" + brackets + "*/\"a\":\"\\\"" + brackets + "\"} //", root), 0);
    EXPECT_EQ(root["a"].asString(), "\"" + brackets);
    EXPECT_EQ(parseConfigText("{} " + brackets, root), 0);
}

TEST(ConfigText, reportsFirstError) {
    Json::Value root;
    kelvo::ConfigTextError error;
    EXPECT_EQ(parseConfigText("{\"a\": x}", root, &error), -1);
    EXPECT_EQ(error.offset, 6U);
    for (const char* text : {"", "{", "{\"a\"", "{\"a\":\"", "{/*", "{/", "}", "{\"a\":\"\\"}) {
        EXPECT_EQ(parseConfigText(text, root), -1) << text;
    }
}
