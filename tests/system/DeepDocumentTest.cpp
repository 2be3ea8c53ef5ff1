// Every program that reads a document takes one that nests too deep for an ordinary mistake.

#include <gmock/gmock.h>
#include <stdlib.h>

#include "common/ConfigStore.h"
#include "sim/tree/DeviceTree.h"
#include "support/Program.h"

namespace {

using testing::HasSubstr;
using Arguments = std::vector<std::string>;

constexpr size_t kDepth = 100000;
const std::string kWhat = "nested deeper than 1000 levels";

struct DeepDocumentTest : testing::Test {
    DeepDocumentTest() {
        // It seems to be a comment to who does not know how lines end.
        const std::string text =
                "{\"temp_threshold_down\": [], // all\r\"a\":" + std::string(kDepth, '[') +
                std::string(kDepth, ']') + "}";
        mFiles.setNode("/document.json", text);
        mFiles.setNode("/stored.conf", common::encryptConfig(text));
        // The daemon's own start and end: it refuses the configuration and goes on.
        mFiles.setNode("/scenario.json",
                       R"({"duration": 1, "zones": [{"type": "skin", "temp": 40000}],
                           "nodes": {"/sys/devices/soc0/soc_id": "457",
                                     "/sys/devices/soc0/raw_version": "2"},
                           "config": {"main": "document.json", "platform": "document.json"}})");
    }
    std::string path(const std::string& name) const { return mFiles.hostPath("/" + name); }

    sim::DeviceTree mFiles{std::string(getenv("KELVO_ROOT")) + "/documents"};
};

}  // namespace

TEST_F(DeepDocumentTest, isAMistakeToKelvoconf) {
    for (const char* name : {"document.json", "stored.conf"}) {
        const std::string file = path(name);
        const Arguments phone{file, "--platform", "SM8450", "--project", "Q"};
        for (const char* command : {"merge", "show", "lint"}) {
            SCOPED_TRACE(std::string(command) + " " + name);
            Arguments arguments = phone;
            arguments.insert(arguments.begin(), command);
            const Program::Result result = Program::run("kelvoconf", arguments);
            if (command == std::string("lint")) {
                EXPECT_EQ(result.status, 3);
                EXPECT_THAT(result.out,
                            HasSubstr(file + ":2: error: not JSON: " + kWhat + " [not-json]"));
            } else {
                EXPECT_THAT(result, ended(1, "kelvoconf: " + kWhat + ": " + file + ":2:1004\n"));
            }
        }
    }
}

TEST_F(DeepDocumentTest, isStoredByForce) {
    const std::string document = path("document.json");
    EXPECT_THAT(Program::run("kelvoconf", {"encrypt", "--force", document, path("out.conf")}),
                ended(0, "kelvoconf: warning: the daemon will reject this text: " + kWhat + ": " +
                                 document + ":2:1004\n"));
    EXPECT_EQ(mFiles.node("/out.conf"), mFiles.node("/stored.conf"));
}

TEST_F(DeepDocumentTest, isAMistakeToKelvosimAsAScenario) {
    const std::string document = path("document.json");
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
        arguments.push_back(document);
        EXPECT_THAT(Program::run("kelvosim", arguments),
                    ended(1, "kelvosim: not JSON: " + kWhat + ": " + document +
                                     ": line 2, column 1004\n"));
    }
}

TEST_F(DeepDocumentTest, doesNotEndTheDaemonAsItsConfiguration) {
    const Program::Result replay =
            Program::run("kelvosim", {"replay", path("scenario.json"), "--events", "-", "--report",
                                      path("page.html"), "--perfetto", path("trace.json")});
    EXPECT_EQ(replay.status, 0) << replay.err;
    EXPECT_THAT(replay.out, HasSubstr("{\"t\":1.000,\"event\":\"end\"}"));
    EXPECT_THAT(mFiles.node("/page.html").value_or(""), HasSubstr(kWhat));
    const Program::Result live = Program::run("kelvosim", {"live", path("scenario.json")});
    EXPECT_EQ(live.status, 0) << live.err;
}
