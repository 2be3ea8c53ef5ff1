// Every program that reads a document takes one that nests too deep for an ordinary mistake.

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <stdlib.h>

#include "common/ConfigStore.h"
#include "sim/tree/DeviceTree.h"
#include "support/Program.h"

namespace {

using testing::HasSubstr;
using Arguments = std::vector<std::string>;

struct Document {
    std::string name;
    std::string text;
    std::string place;  // "line:column" of what is too deep
};

void PrintTo(const Document& document, std::ostream* out) {
    *out << document.name;
}

/** The second seems to be a comment to who does not know how lines end. */
std::vector<Document> documents() {
    const auto lists = [](size_t depth) {
        return std::string(depth, '[') + std::string(depth, ']');
    };
    return {{"OfAHundredThousand", "{\"temp_threshold_down\":\n" + lists(100000) + "}", "2:1000"},
            {"BehindAReturn", "{\"temp_threshold_down\": [], // all\r\"a\":" + lists(1001) + "}",
             "2:1004"}};
}

class DeepDocumentTest : public testing::TestWithParam<Document> {
  protected:
    DeepDocumentTest() {
        mFiles.setNode("/document.json", GetParam().text);
        mFiles.setNode("/stored.conf", common::encryptConfig(GetParam().text));
        // The daemon's own start and end: it refuses the configuration and goes on.
        mFiles.setNode("/scenario.json",
                       R"({"duration": 1, "zones": [{"type": "skin", "temp": 40000}],
                           "nodes": {"/sys/devices/soc0/soc_id": "457",
                                     "/sys/devices/soc0/raw_version": "2"},
                           "config": {"main": "document.json", "platform": "document.json"}})");
    }
    std::string path(const std::string& name) const { return mFiles.hostPath("/" + name); }
    /** "FILE:2:1000", or "FILE: line 2, column 1000". */
    std::string place(const std::string& name) const { return path(name) + ":" + GetParam().place; }
    std::string placeInWords() const {
        const std::string& place = GetParam().place;
        const size_t colon = place.find(':');
        return path("document.json") + ": line " + place.substr(0, colon) + ", column " +
               place.substr(colon + 1);
    }

    sim::DeviceTree mFiles{std::string(getenv("KELVO_ROOT")) + "/documents"};
};

constexpr char kWhat[] = "nested deeper than 1000 levels";

}  // namespace

TEST_P(DeepDocumentTest, isAMistakeToKelvoconf) {
    const Arguments phone{"--platform", "SM8450", "--project", "Q"};
    for (const char* command : {"merge", "show", "lint"}) {
        for (const char* file : {"document.json", "stored.conf"}) {
            SCOPED_TRACE(std::string(command) + " " + file);
            Arguments arguments{command, path(file)};
            arguments.insert(arguments.end(), phone.begin(), phone.end());
            const Program::Result result = Program::run("kelvoconf", arguments);
            if (command == std::string("lint")) {
                EXPECT_EQ(result.status, 3);
                const std::string line = GetParam().place.substr(0, GetParam().place.find(':'));
                EXPECT_THAT(result.out, HasSubstr(path(file) + ":" + line +
                                                  ": error: not JSON: " + kWhat + " [not-json]"));
            } else {
                EXPECT_EQ(result.status, 1);
                EXPECT_EQ(result.err,
                          std::string("kelvoconf: ") + kWhat + ": " + place(file) + "\n");
            }
        }
    }
}

TEST_P(DeepDocumentTest, isStoredWithAWarning) {
    const Program::Result result =
            Program::run("kelvoconf", {"encrypt", path("document.json"), path("out.conf")});
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.err, std::string("kelvoconf: warning: the daemon will reject this text: ") +
                                  kWhat + ": " + place("document.json") + "\n");
    EXPECT_EQ(mFiles.node("/out.conf"), mFiles.node("/stored.conf"));
}

TEST_P(DeepDocumentTest, isAMistakeToKelvosimAsAScenario) {
    const Arguments commands[] = {
            {"check"},
            {"replay"},
            {"replay", "--report", path("page.html"), "--perfetto", path("trace.json")},
            {"live"},
            {"framework"},
            {"replay", path("scenario.json"), "--against"},
    };
    for (Arguments arguments : commands) {
        SCOPED_TRACE(arguments.front() + " " + arguments.back());
        arguments.push_back(path("document.json"));
        const Program::Result result = Program::run("kelvosim", arguments);
        EXPECT_EQ(result.status, 1);
        EXPECT_EQ(result.err,
                  std::string("kelvosim: not JSON: ") + kWhat + ": " + placeInWords() + "\n");
    }
}

TEST_P(DeepDocumentTest, doesNotEndTheDaemonAsItsConfiguration) {
    const Program::Result replay =
            Program::run("kelvosim", {"replay", path("scenario.json"), "--events", "-", "--report",
                                      path("page.html"), "--perfetto", path("trace.json")});
    EXPECT_EQ(replay.status, 0) << replay.err;
    EXPECT_THAT(replay.out, HasSubstr("{\"t\":1.000,\"event\":\"end\"}"));
    EXPECT_THAT(mFiles.node("/page.html").value_or(""), HasSubstr(kWhat));
    const Program::Result live = Program::run("kelvosim", {"live", path("scenario.json")});
    EXPECT_EQ(live.status, 0) << live.err;
}

INSTANTIATE_TEST_SUITE_P(Documents, DeepDocumentTest, testing::ValuesIn(documents()),
                         [](const auto& document) { return document.param.name; });
