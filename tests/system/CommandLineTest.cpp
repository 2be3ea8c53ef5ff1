// All programs look the same to who runs them.

#include <gmock/gmock.h>

#include "support/Program.h"

namespace {

using testing::HasSubstr;
using testing::MatchesRegex;

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
