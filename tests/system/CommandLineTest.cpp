// All programs look the same to who runs them.

#include <gmock/gmock.h>

#include <filesystem>

#include "sim/tree/TemporaryFolder.h"
#include "support/Files.h"
#include "support/Program.h"

namespace {

using testing::ContainsRegex;
using testing::HasSubstr;
using testing::MatchesRegex;
using testing::Not;

struct Case {
    const char* program;
    std::vector<std::string> failing;  // arguments with which it fails
};

/** Where there is no phone and no such file. */
const Case kPrograms[] = {
        {"binderhub", {"state"}},     {"kelvoconf", {"show", "/no/such/file"}},
        {"kelvoctl", {"status"}},     {"kelvosim", {"check", "/no/such/file"}},
        {"phoneservice", {"health"}}, {"servicemanager", {}},
};

}  // namespace

TEST(CommandLine, isOfOneShape) {
    for (const auto& [program, failing] : kPrograms) {
        SCOPED_TRACE(program);
        const std::string name = program;
        const Program::Result version = Program::run(name, {"--version"});
        EXPECT_THAT(version, ended(0, ""));
        EXPECT_THAT(version.out, MatchesRegex(name + " [0-9]+\\.[0-9]+\\.[0-9]+\n"));
        const Program::Result help = Program::run(name, {"--help"});
        EXPECT_THAT(help, ended(0, ""));
        EXPECT_THAT(help.out, HasSubstr("Usage: " + name));
        const Program::Result wrong = Program::run(name, {"--no-such-option"});
        EXPECT_THAT(wrong, ended(2, MatchesRegex(name + ": [^\n]+: command line\nRun " + name +
                                                 " --help for the usage.\n")));
        const Program::Result failure = Program::run(name, failing);
        EXPECT_THAT(failure, ended(1, MatchesRegex(name + ": [^\n]+: [^\n]+\n")));
        EXPECT_EQ(wrong.out + failure.out, "");
    }
}

TEST(CommandLine, namesACommandThatDoesNotExistAndATemporaryFolderThatDoesNot) {
    EXPECT_THAT(Program::run("kelvosim", {"repaly"}),
                ended(2, HasSubstr("no command \"repaly\", did you mean \"replay\"?: command")));
    for (const char* const command : {"live", "replay"}) {
        EXPECT_THAT(
                Program::runRooted("", programPath("kelvosim"),
                                   {command, EXAMPLES "/hello/scenario.json"}, {"TMPDIR=/no/such"}),
                ended(1, "kelvosim: TMPDIR names no folder: /no/such\n"));
    }
}

/** A command line that bash is to run with this before it and this behind it. */
Program::Result runInShell(const std::string& before, const std::string& program,
                           const std::vector<std::string>& arguments, const std::string& behind) {
    return Program::runRooted("/no/such/phone", programPath(program), arguments,
                              {"bash", "-c", before + " \"$0\" \"$@\" " + behind});
}

TEST(CommandLine, saysThatOutputIsLostUnlessItsReaderHasGone) {
    const sim::TemporaryFolder folder("kelvo-test-");
    const std::string pipe = folder.path() + "/pipe";
    const std::tuple<std::string, int, std::string> rows[] = {
            {">/dev/full", 1,
             "cannot (write|be written) \\(No space left on device\\): standard output\n"},
            {">&-", 1, "cannot (write|be written) \\(Bad file descriptor\\): standard output\n"},
            {"3<>" + pipe + " 4>" + pipe + " 3<&- >&4", 0, ""},
    };
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    std::vector<Case> cases{{"kelvosim", {"replay", EXAMPLES "/hello/scenario.json"}},
                            {"kelvosim", {"check", EXAMPLES "/hello/scenario.json"}},
                            {"kelvoconf", {"show", EXAMPLES "/hello/kelvo.json"}}};
    for (const Case& each : kPrograms) {
        cases.push_back({each.program, {"--help"}});
    }
    for (const auto& [program, arguments] : cases) {
        for (const auto& [redirection, status, line] : rows) {
            const std::string expected = line.empty() ? "" : program + (": " + line);
            EXPECT_THAT(runInShell("", program, arguments, redirection),
                        ended(status, MatchesRegex(expected)))
                    << program << arguments[0] << redirection;
        }
    }
}

TEST(CommandLine, hasAManualWithKindsOfAllValuesAndExamplesOfAllCommands) {
    for (const char* const name :
         {"binderhub", "kelvoconf", "kelvoctl", "kelvosim", "servicemanager"}) {
        SCOPED_TRACE(name);
        EXPECT_THAT(runInShell("", name, {"--manual"}, "| groff -K utf8 -man -ww -z"),
                    ended(0, ""));
        std::string page = Program::run(name, {"--manual"}).out;
        EXPECT_THAT(page, Not(ContainsRegex("fR .fI(TEXT|INT|UINT|FLOAT)")));
        for (size_t end; (end = page.rfind("\n.SS ")) != std::string::npos; page.resize(end)) {
            const std::string command = page.substr(end);
            EXPECT_TRUE(command.find("\n.nf\n") < command.find("\n.SH ") ||
                        command.find("COMMAND") != std::string::npos)
                    << command;
        }
    }
    const std::string script = COMPLETIONS "/kelvosim";
    EXPECT_EQ(Program::completed(script, "kelvosim live --r"), "--root");
    EXPECT_EQ(Program::completed(script, "kelvosim replay " EXAMPLES "/game/s"),
              EXAMPLES "/game/scenario.json");
}

TEST(CommandLine, replacesAFileWholeOrNotAtAll) {
    const sim::TemporaryFolder folder("kelvo-test-");
    const std::string file = folder.path() + "/file";
    for (const char* const option : {"--events", "--log", "--explain", "--report", "--perfetto"}) {
        std::ofstream(file) << "old";
        const std::vector<std::string> arguments{"replay", EXAMPLES "/game/scenario.json", option,
                                                 file};
        EXPECT_THAT(runInShell("ulimit -f 16; trap '' XFSZ;", "kelvosim", arguments, ""),
                    ended(1, "kelvosim: cannot be written (File too large): " + file + "\n"));
        EXPECT_EQ(readFile(file), "old");
        EXPECT_THAT(runInShell("", "kelvosim", arguments, ""), ended(0, ""));
        EXPECT_NE(readFile(file), "old");
    }
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder.path()), {}), 1);
}
