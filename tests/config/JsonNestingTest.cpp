#include "config/JsonNesting.h"

#include <gtest/gtest.h>

#include "fuzz/JsonVerdict.h"

namespace {

using kelvo::findTooDeepJson;
using kelvo::jsonCommentEnd;

constexpr size_t kNone = std::string_view::npos;

std::string arrays(size_t depth, const std::string& inner) {
    return std::string(depth, '[') + inner + std::string(depth, ']');
}

/** `open` ends where a member's value is due. */
std::string nested(const std::string& open, size_t depth, const std::string& inner) {
    std::string text;
    for (size_t i = 0; i < depth; ++i) {
        text += open;
    }
    return text + inner + std::string(depth, '}');
}

std::string objects(size_t depth, const std::string& inner) {
    return nested("{\"a\":", depth, inner);
}

/** The library throws what is found, takes what is not; what it refuses may be found or not. */
void expectAgreement(const std::string& text) {
    const bool isTooDeep = findTooDeepJson(text) != kNone;
    for (const auto read : {fuzz::readByReader, fuzz::readByCharReader}) {
        const fuzz::Verdict verdict = read(text);
        EXPECT_FALSE(verdict == fuzz::Verdict::THREW && !isTooDeep) << "missed: " << text;
        EXPECT_FALSE(verdict == fuzz::Verdict::PARSED && isTooDeep) << "too strict: " << text;
    }
}

}  // namespace

TEST(JsonNesting, commentsEndWhereTheLibraryEndsThem) {
    const std::pair<const char*, size_t> cases[] = {
            {"// a\nb", 5},    {"// a\rb", 5},     {"// a\r\nb", 6},  {"// a\n\rb", 5},
            {"// a", 4},       {"//", 2},          {"// /* \n*/", 7}, {"/* a */b", 7},
            {"/* // */\n", 8}, {"/* /* */ */", 8}, {"/*\r\n*/b", 6},  {"/**/b", 4},
            {"/*/b*/", 6},     {"/* a", 4},        {"/* a *", 6},     {"/a", kNone},
            {"/", kNone},      {"\"//\"", kNone},  {"", kNone},       {"// \"\n\"", 5},
    };
    for (const auto& [text, end] : cases) {
        EXPECT_EQ(jsonCommentEnd(text, 0), end) << text;
        EXPECT_EQ(jsonCommentEnd(std::string("[1") + text, 2), end == kNone ? kNone : end + 2);
    }
}

TEST(JsonNesting, findsTheFirstValueBeyondTheLimit) {
    // what, text, place
    const std::tuple<const char*, std::string, size_t> cases[] = {
            {"arrays at the limit", arrays(1000, ""), kNone},
            {"a value at the limit", arrays(999, "1"), kNone},
            {"a value beyond", arrays(1000, " 1"), 1001},
            {"an array beyond", arrays(1001, ""), 1000},
            {"objects at the limit", objects(999, "{}"), kNone},
            {"a member beyond", objects(999, "{ \"a\":1}"), 5001},
            {"a comment in an object at the limit", objects(999, "{/*[*/ //\r}"), kNone},
            {"a comment in an array at the limit", arrays(1000, "/**/"), 1000},
            {"the text's end in an array at the limit", std::string(1000, '['), 1000},
            {"the text's end before it", std::string(999, '['), kNone},
            {"behind a comment that ends with \\r", "[// [\r" + arrays(1000, "1"), 1005},
            {"behind a comment that ends with \\n", "[// [\r\n" + arrays(1000, "1"), 1006},
            {"in a comment that a \\r does not end", "[/*\r" + arrays(1000, "1"), kNone},
            {"behind a string of openers", "[\"/*\",\"//\"," + arrays(1000, ""), 1010},
            {"behind escapes", R"(["\"","\\",)" + arrays(1000, ""), 1010},
            {"in a string", "[\"\\\"" + arrays(1000, "1") + "\"]", kNone},
            {"behind a byte-order mark", "\xef\xbb\xbf" + arrays(1001, ""), 1003},
            {"behind the document", "{} " + arrays(1001, ""), kNone},
            {"behind a document that is no array", "1 " + arrays(1001, ""), kNone},
            {"beside shallow ones", "[[[]]," + arrays(998, "1") + "]", kNone},
            {"beside deep ones", "[" + arrays(999, "") + "," + arrays(999, "1") + "]", 2999},
            {"behind what is no comment", "[/" + arrays(1001, ""), kNone},
            {"behind a mistake", "[1 2" + arrays(1001, ""), kNone},
            {"behind a missing value", "[," + arrays(1001, ""), kNone},
            {"behind a comment before a comma", "[1/**/," + arrays(1000, ""), 1006},
            {"where a bracket is a mistake", nested("{\"b\":1]\"a\":", 1001, "1"), kNone},
            // Behind a comment the library takes any token for the comma of an object.
            {"where a bracket is a comma", nested("{\"b\":1/**/]\"a\":", 1001, "1"), 14990},
            {"where an opening one is", nested("{\"b\":1/**/[\"a\":", 1000, "1"), 14990},
            {"where it is not too deep", nested("{\"b\":1/**/[\"a\":", 999, "{}"), kNone},
            {"where a text is one", nested(R"({"b":1/**/"[\"c""a":)", 1000, "1"), 19985},
            {"where a word is one", nested(R"({"b":1/**/true"a":)", 1000, "1"), 17987},
            {"where half a comment is one", nested(R"({"b":1/**//-"a":)", 1000, "1"), 15989},
    };
    for (const auto& [what, text, place] : cases) {
        SCOPED_TRACE(what);
        EXPECT_EQ(findTooDeepJson(text), place);
        expectAgreement(text);
    }
}
