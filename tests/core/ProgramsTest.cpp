#include <gmock/gmock.h>
#include <signal.h>

#include "sim/tree/DeviceTree.h"
#include "support/Program.h"

namespace {

// Runs a program of this build on the test's own phone, with a property set to this.
Program::Result run(const char* program, const std::string& property, const char* value) {
    const std::string root = getenv("KELVO_ROOT");
    sim::DeviceTree(root).setProperty(property, value);
    return Program::runRooted(root, program, {}, {"KELVO_BINDER=hub"});
}

}  // namespace

// The level is read while a program is loaded, so each row is a program of its own.
TEST(Log, printsAndEvaluatesOnlyWhatTheLevelLetsThrough) {
    const std::pair<const char*, const char*> rows[] = {
            {"-1", "evaluated 0\n"},
            {"0", "6 kelvo error 1\nevaluated 1\n"},
            {"1", "4 kelvo info 1\n6 kelvo error 2\nevaluated 2\n"},
            {"2", "3 kelvo debug 1\n4 kelvo info 2\n6 kelvo error 3\nevaluated 3\n"},
            {"", "6 kelvo error 1\nevaluated 1\n"},
    };
    for (const auto& [level, output] : rows) {
        EXPECT_EQ(run(LOG_PROBE, "persist.sys.kelvo.loglevel", level).out, output) << level;
    }
}

TEST(Kelvod, leavesWithFailureUnlessEnabledByExactlyOneOrTwo) {
    for (const char* value : {"", "0", "3", "11", "12", "1 ", " 1", "2x", "true"}) {
        const Program::Result result = run(KELVOD, "persist.sys.kelvo.enable", value);
        EXPECT_EQ(result.status, 255) << value;
        EXPECT_THAT(result.err, testing::ContainsRegex("kelvo version:.android:33.\n.*"
                                                       "kelvo is not enabled"));
    }
}

TEST(Kelvod, startsWhenEnabledAndGivesUpWithoutADriver) {
    for (const char* value : {"1", "2"}) {
        EXPECT_THAT(run(KELVOD, "persist.sys.kelvo.enable", value),
                    ended(128 + SIGABRT, testing::HasSubstr("kelvo main start")));
    }
}
