#pragma once

#include "sim/scenario/Scenario.h"

/** "place: problem" of what `read` refuses in the file "s.json"; empty when it accepts all. */
template <typename Read>
std::string refusalOf(Read read) {
    try {
        read();
    } catch (const sim::ScenarioError& error) {
        EXPECT_EQ(error.file(), "s.json");
        return error.place() + ": " + error.problem();
    }
    return "";
}
