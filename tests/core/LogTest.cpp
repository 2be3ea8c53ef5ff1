#include <gtest/gtest.h>
#include <stdio.h>
#include <stdlib.h>

#include <string>

#include "sim/DeviceTree.h"

namespace {

std::string outputOf(const std::string& program) {
    FILE* pipe = popen(program.c_str(), "r");
    if (pipe == nullptr) {
        return "cannot run " + program;
    }
    std::string output;
    for (int c = fgetc(pipe); c != EOF; c = fgetc(pipe)) {
        output.push_back(static_cast<char>(c));
    }
    pclose(pipe);
    return output;
}

}  // namespace

// The level is read while a program is loaded, so each row is a program of its own.
TEST(Log, printsAndEvaluatesOnlyWhatTheLevelLetsThrough) {
    const struct {
        const char* level;
        const char* output;
    } rows[] = {
            {"-1", "evaluated 0\n"},
            {"0", "6 kelvo error 1\nevaluated 1\n"},
            {"1", "4 kelvo info 1\n6 kelvo error 2\nevaluated 2\n"},
            {"2", "3 kelvo debug 1\n4 kelvo info 2\n6 kelvo error 3\nevaluated 3\n"},
            {"", "6 kelvo error 1\nevaluated 1\n"},
    };
    sim::DeviceTree tree(getenv("KELVO_ROOT"));
    for (const auto& row : rows) {
        tree.setProperty("persist.sys.kelvo.loglevel", row.level);
        EXPECT_EQ(outputOf(LOG_PROBE), row.output) << "level \"" << row.level << '"';
    }
}
