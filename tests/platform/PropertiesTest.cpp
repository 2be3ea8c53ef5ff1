#include <cutils/properties.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <atomic>
#include <cstring>
#include <filesystem>
#include <map>
#include <thread>

#include "support/Phone.h"

namespace {

struct PropertiesTest : testing::Test {
    static std::string get(const char* name, const char* defaultValue = nullptr) {
        char value[PROPERTY_VALUE_MAX] = "untouched";
        const int length = property_get(name, value, defaultValue);
        EXPECT_EQ(strlen(value), static_cast<size_t>(length));
        return value;
    }

    static std::map<std::string, std::string> list() {
        std::map<std::string, std::string> found;
        const auto add = [](const char* name, const char* value, void* cookie) {
            (*static_cast<decltype(found)*>(cookie))[name] = value;
        };
        EXPECT_EQ(0, property_list(add, &found));
        return found;
    }
};

const std::string kLongest(PROP_VALUE_MAX - 1, 'x');
const std::string kTooLong(PROP_VALUE_MAX, 'x');

TEST_F(PropertiesTest, givesTheDefaultForWhatIsAbsentOrEmpty) {
    EXPECT_EQ("", get("a.b"));
    EXPECT_EQ("fallback", get("a.b", "fallback"));
    EXPECT_EQ(kLongest, get("a.b", kTooLong.c_str()));
    ASSERT_EQ(0, property_set("a.b", "value"));
    EXPECT_EQ("value", get("a.b", "fallback"));
    ASSERT_EQ(0, property_set("a.b", nullptr));
    EXPECT_EQ("fallback", get("a.b", "fallback"));
    EXPECT_EQ("", list().at("a.b"));
}

TEST_F(PropertiesTest, limitsValuesUnlessTheyAreReadOnly) {
    EXPECT_EQ(0, property_set("a", kLongest.c_str()));
    EXPECT_EQ(-1, property_set("a", kTooLong.c_str()));
    EXPECT_EQ(kLongest, get("a"));
    EXPECT_EQ(0, property_set("ro.a", kTooLong.c_str()));
    EXPECT_EQ("Must use __system_property_read_callback() to read", get("ro.a"));
    EXPECT_EQ(kTooLong, list().at("ro.a"));
}

TEST_F(PropertiesTest, readsFilesAsAnEditorLeavesThem) {
    const std::pair<std::string, std::vector<std::string>> rows[] = {
            {"1", {"1\n", std::string("1\0002", 3)}},
            {"1\n", {"1\n\n"}},
            {" 1 ", {" 1 "}},
            {kLongest, {kLongest + "\n"}},
            {"", {"\n", kTooLong, kTooLong + "\n"}}};
    for (const auto& [value, texts] : rows) {
        for (const std::string& text : texts) {
            phone().setNode("/dev/properties/edited", text);
            EXPECT_EQ(value, get("edited")) << text;
        }
    }
    std::filesystem::create_directory(phone().hostPath("/dev/properties/folder"));
    EXPECT_EQ("default", get("folder", "default"));
    ASSERT_EQ(0, mkfifo(phone().hostPath("/dev/properties/pipe").c_str(), 0600));
    EXPECT_EQ("default", get("pipe", "default"));
}

TEST_F(PropertiesTest, setsReadOnlyPropertiesOnce) {
    EXPECT_EQ(0, property_set("ro.empty", ""));
    EXPECT_EQ(-1, property_set("ro.empty", "late"));
    EXPECT_EQ(0, property_set("ro", "1"));
    EXPECT_EQ(0, property_set("ro", "2"));

    std::vector<std::jthread> writers;
    std::atomic<int> winners = 0;
    for (int i = 0; i < 8; ++i) {
        writers.emplace_back([&, value = std::to_string(i)] {
            winners += property_set("ro.race", value.c_str()) == 0 ? 1 : 0;
        });
    }
    writers.clear();  // joins
    EXPECT_EQ(1, winners);
}

TEST_F(PropertiesTest, acceptsAndroidsNames) {
    const std::string longName(200, 'n');
    for (const char* name : {"a", "A.b-c_d@e:f.0", longName.c_str(), "-a", "a:"}) {
        EXPECT_EQ(0, property_set(name, "1")) << name;
        EXPECT_EQ("1", get(name)) << name;
    }
    phone().setNode("/dev/escaped", "outside");
    for (const char* name : {"", ".", "..", "../escaped", "/escaped", "a/b", ".a", "a.", "a..b",
                             "a b", "a\n", "ä", "a$", "a/../escaped"}) {
        EXPECT_EQ(-1, property_set(name, "1")) << name;
        EXPECT_EQ("", get(name)) << name;
    }
    EXPECT_EQ(-1, property_set(nullptr, "1"));
    EXPECT_EQ("outside", phone().node("/dev/escaped"));
}

TEST_F(PropertiesTest, listsNoDraftsAndNoForeignFiles) {
    property_set("b", "2");
    property_set("a", "1");
    phone().setNode("/dev/properties/.draft-abc", "3");
    phone().setNode("/dev/properties/README~", "4");
    std::map<std::string, std::string> found = list();
    found.erase("persist.sys.kelvo.loglevel");
    EXPECT_EQ((std::map<std::string, std::string>{{"a", "1"}, {"b", "2"}}), found);
}

TEST_F(PropertiesTest, convertsToBool) {
    const std::pair<int8_t, std::vector<const char*>> rows[] = {
            {1, {"1", "y", "yes", "on", "true"}},
            {0, {"0", "n", "no", "off", "false"}},
            {7, {"", "2", " on", "on ", "TRUE", "t", "truer", "01"}}};
    for (const auto& [value, texts] : rows) {
        for (const char* text : texts) {
            property_set("bool", text);
            EXPECT_EQ(value, property_get_bool("bool", 7)) << text;
        }
    }
    EXPECT_EQ(7, property_get_bool(nullptr, 7));
}

TEST_F(PropertiesTest, convertsToIntegers) {
    const std::pair<int64_t, std::vector<const char*>> rows[] = {
            {12, {"12", "+12", "0xC", "014", "  12", "12 rest", "12.9"}},
            {0, {"09"}},
            {INT32_MAX, {"2147483647"}},
            {INT32_MAX + 1LL, {"2147483648"}},
            {INT32_MIN, {"-2147483648"}},
            {INT32_MIN - 1LL, {"-2147483649"}},
            {INT64_MAX, {"9223372036854775807"}},
            {INT64_MIN, {"-9223372036854775808"}},
            {7, {"", " ", "x12", "-", "9223372036854775808", "-9223372036854775809"}}};
    for (const auto& [value, texts] : rows) {
        const int32_t value32 =
                value < INT32_MIN || value > INT32_MAX ? 7 : static_cast<int32_t>(value);
        for (const char* text : texts) {
            property_set("number", text);
            EXPECT_EQ(value, property_get_int64("number", 7)) << text;
            EXPECT_EQ(value32, property_get_int32("number", 7)) << text;
        }
    }
}

}  // namespace
