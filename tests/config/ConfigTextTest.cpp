#include "config/ConfigText.h"

#include <gtest/gtest.h>

using kelvo::parseConfigText;

// Beyond its limit the library would end the process.
TEST(ConfigText, refusesWhatNestsTooDeep) {
    const auto lists = [](size_t depth, const std::string& inner) {
        return std::string(depth, '[') + inner + std::string(depth, ']');
    };
    Json::Value root;
    EXPECT_EQ(parseConfigText(lists(1000, ""), root), 0);
    EXPECT_EQ(parseConfigText(lists(999, "1"), root), 0);
    EXPECT_EQ(parseConfigText(lists(1000, "1"), root), -1);
    kelvo::ConfigTextError error;
    EXPECT_EQ(parseConfigText("{// a\r\"b\":" + lists(1000, "") + "}", root, &error), -1);
    EXPECT_EQ(error.offset, 1009U) << "a carriage return ends the comment";
}

TEST(ConfigText, bracketsInTextsAndCommentsDoNotNest) {
    const std::string brackets(2000, '[');
    Json::Value root;
    EXPECT_EQ(parseConfigText("{/*" + brackets + "*/\"a\":\"\\\"" + brackets + "\"} //", root), 0);
    EXPECT_EQ(root["a"].asString(), "\"" + brackets);
}

TEST(ConfigText, brokenTextFails) {
    Json::Value root;
    for (const char* text : {"", "{", "{\"a\"", "{\"a\":\"", "{/*", "{/", "}", "{\"a\":\"\\"}) {
        EXPECT_EQ(parseConfigText(text, root), -1) << text;
    }
    kelvo::ConfigTextError error;
    EXPECT_EQ(parseConfigText("}", root, &error), -1);
    EXPECT_EQ(error.offset, 0U);
}
