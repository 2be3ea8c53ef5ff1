#include <gtest/gtest.h>
#include <stdio.h>
#include <sys/stat.h>
#include <sys/wait.h>

#include <filesystem>
#include <fstream>
#include <sstream>

#include "sim/ConfigStore.h"
#include "sim/DeviceTree.h"

namespace {

struct Outcome {
    int status;
    std::string output;  // standard output and error, in order
};

class KelvoconfTest : public testing::Test {
  protected:
    /** Runs the tool in a folder of its own. */
    Outcome run(const std::string& arguments) const {
        const std::string command =
                "cd '" + mFolder.path() + "' && { " KELVOCONF " " + arguments + "; } 2>&1";
        FILE* pipe = popen(command.c_str(), "r");
        Outcome outcome{};
        for (int c = fgetc(pipe); c != EOF; c = fgetc(pipe)) {
            outcome.output.push_back(static_cast<char>(c));
        }
        outcome.status = WEXITSTATUS(pclose(pipe));
        return outcome;
    }

    std::string path(const std::string& name) const { return mFolder.path() + "/" + name; }

    void write(const std::string& name, const std::string& bytes) const {
        std::ofstream(path(name), std::ios::binary) << bytes;
    }

    std::string read(const std::string& name) const {
        std::stringstream bytes;
        bytes << std::ifstream(path(name), std::ios::binary).rdbuf();
        return bytes.str();
    }

    size_t fileCount() const {
        return static_cast<size_t>(
                std::distance(std::filesystem::directory_iterator(mFolder.path()), {}));
    }

    const sim::TemporaryFolder mFolder{"kelvoconf-test-"};
};

constexpr char kMain[] = R"(// a comment
{"a": 1, "list": [1, 2], "o": {"x": 0.1, "y": 1}, "SM8450": {"a": 2, "o": {"x": 0.25}},
 "Q\n": {"o": {"y": 3}}, "Q,R": {"list": [3], "o": {"z": {"v": true}}}, "MT6983": 5})";
constexpr char kSub[] = R"({"a": 7, "o": {"z": null}, "R": {"o": "gone"}, "Q,R": {"b.c": "ü"}})";

}  // namespace

TEST_F(KelvoconfTest, decryptGivesBackWhatEncryptStored) {
    const std::string json = "{\"a\" : 1} // kept\n\n";
    write("in.json", json);
    write("out.conf", "an older file");
    const Outcome outcome = run("encrypt in.json out.conf");
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.output, "");
    EXPECT_EQ(read("out.conf"), kelvo::encryptConfig(json));
    struct stat info = {};
    ASSERT_EQ(stat(path("out.conf").c_str(), &info), 0);
    EXPECT_EQ(info.st_mode & 07777U, 0644U);
    EXPECT_EQ(run("decrypt out.conf -").output, json);
    EXPECT_EQ(run("encrypt - - < in.json | " KELVOCONF " decrypt - back.json").status, 0);
    EXPECT_EQ(read("back.json"), json);
    EXPECT_EQ(fileCount(), 3U);  // nothing half-written stays behind
}

TEST_F(KelvoconfTest, encryptDropsWhatTheDaemonWouldReject) {
    write("in.json", "\xef\xbb\xbf /* { */\n// {\n{}");
    const Outcome outcome = run("encrypt in.json out.conf");
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.output,
              "kelvoconf: warning: dropped 17 bytes before the first \"{\": in.json\n");
    EXPECT_EQ(read("out.conf"), kelvo::encryptConfig("{}"));
}

TEST_F(KelvoconfTest, encryptOnlyWarnsOfTextThatDoesNotParse) {
    write("in.json", "\n{\"a\": 1,\n \"b\": x}");
    const Outcome outcome = run("encrypt in.json out.conf");
    EXPECT_EQ(outcome.status, 0);
    EXPECT_NE(outcome.output.find(": in.json:3:7\n"), std::string::npos) << outcome.output;
    EXPECT_EQ(read("out.conf"), kelvo::encryptConfig("{\"a\": 1,\n \"b\": x}"));
}

TEST_F(KelvoconfTest, failuresSayWhatAndWhere) {
    write("list.json", "[{}]");
    write("text.json", "text");
    write("bad.json", "// first line\n{\"a\": 1,\n \"b\": x}");
    write("bad.conf", kelvo::encryptConfig("{\n]"));
    write("out", "untouched");
    struct {
        const char* arguments;
        int status;
        const char* message;  // how the first line ends
    } const rows[] = {
            {"encrypt text.json out", 1, "no \"{\" in the text: text.json"},
            {"encrypt list.json out", 1, "the text does not begin with an object: list.json"},
            {"encrypt none.json out", 1, "cannot open (No such file or directory): none.json"},
            {"encrypt bad.json none/out", 1, ": none/out"},
            {"decrypt bad.json out", 1, "not an encrypted configuration: bad.json"},
            {"decrypt - out < /dev/null", 1, "not an encrypted configuration: standard input"},
            {"decrypt bad.conf - > /dev/full", 1, ": standard output"},
            {"merge --platform SM8450 --project Q bad.json", 1, ": bad.json:3:7"},
            {"merge --platform SM8450 --project Q bad.conf", 1, ": bad.conf:2:1"},
            {"merge --platform SM8450 --project Q list.json", 1, ": list.json"},
            {"", 2, ": command line"},
            {"encrypt in.json", 2, ": command line"},
            {"encrypt in.json out --what", 2, ": command line"},
            {"merge --platform SM8450 bad.json", 2, ": command line"},
    };
    for (const auto& row : rows) {
        const Outcome outcome = run(row.arguments);
        EXPECT_EQ(outcome.status, row.status) << row.arguments;
        EXPECT_EQ(outcome.output.find("kelvoconf: "), 0U) << outcome.output;
        EXPECT_NE(outcome.output.find(std::string(row.message) + "\n"), std::string::npos)
                << row.arguments << ": " << outcome.output;
    }
    EXPECT_EQ(read("out"), "untouched");
}

TEST_F(KelvoconfTest, helpAndVersionSucceed) {
    EXPECT_EQ(run("--help").status, 0);
    EXPECT_NE(run("merge --help").output.find("--explain"), std::string::npos);
    EXPECT_EQ(run("--version").output.find("kelvoconf "), 0U);
}

TEST_F(KelvoconfTest, mergePrintsDocumentOfPlainOrEncryptedFiles) {
    write("main.json", "{\"a\": 0.1, \"P\": {\"a\": 1}, \"SM8450\": {\"a\": 0.2}}");
    write("sub.conf", kelvo::encryptConfig("{\"b\": [1]}"));
    const std::string options = "merge --platform SM8450 --project '' ";
    EXPECT_EQ(run(options + "--json main.json").output,
              R"({"P":{"a":1},"SM8450":{"a":0.2},"a":0.2})"
              "\n");
    EXPECT_EQ(run(options + "--json main.json sub.conf").output,
              R"({"P":{"a":1},"SM8450":{"a":0.2},"a":0.2,"b":[1]})"
              "\n");
    EXPECT_NE(run(options + "main.json").output.find("\n\t\"a\" : 0.2\n}\n"), std::string::npos);
}

TEST_F(KelvoconfTest, explainNamesWhoSetWhatLast) {
    write("main.json", kMain);
    write("sub.json", kSub);
    const std::string files = " --explain main.json";
    EXPECT_EQ(run("merge --platform SM8450 --project \"$(printf 'Q\\n.')\"" + files).output,
              "a = 2  # main: platform section SM8450\n"
              "o.x = 0.25  # main: platform section SM8450\n");
    // The sub-file's sections become members of the document, and so are touched keys themselves.
    EXPECT_EQ(run("merge --platform SM8450 --project Q" + files + " sub.json").output,
              "\"Q,R\".\"b.c\" = \"ü\"  # sub: top level\n"
              "R.o = \"gone\"  # sub: top level\n"
              "a = 7  # sub: top level\n"
              "\"b.c\" = \"ü\"  # sub: project group \"Q,R\"\n"
              "list = [3]  # main: project group \"Q,R\"\n"
              "o.x = 0.25  # main: platform section SM8450\n"
              "o.z.v = true  # main: project group \"Q,R\"\n");
    // Replacing an object takes with it what others set inside.
    EXPECT_EQ(run("merge --json --platform SM8450 --project R" + files + " sub.json").output,
              R"({"path":["Q,R","b.c"],"value":"ü","section":"sub: top level"}
{"path":["R","o"],"value":"gone","section":"sub: top level"}
{"path":["a"],"value":7,"section":"sub: top level"}
{"path":["list"],"value":[3],"section":"main: project group \"Q,R\""}
{"path":["o"],"value":"gone","section":"sub: project section R"}
)");
    EXPECT_EQ(run("merge --platform MT6983 --project X" + files).output,
              "kelvoconf: warning: this section is not an object, ignored: "
              "main: platform section MT6983\n");
}
