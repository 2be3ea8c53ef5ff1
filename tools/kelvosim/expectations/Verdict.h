#pragma once

#include <cstdint>
#include <iosfwd>
#include <string>
#include <vector>

#include "recording/Recording.h"
#include "sim/scenario/Expectation.h"

/** What became of an expectation. */
struct Verdict {
    std::string place;     // "expect[0]"
    std::string name;      // empty: it goes by its text
    std::string expected;  // "by 315 s: status 2"
    bool passed = false;
    std::string happened;  // also when it passed: "at 310 s: status 2"
    std::string why;       // the reasons of it; empty when it passed
    int64_t timeMs = 0;    // the moment that decided
};

/** Compares what was expected with what came of it, in the order of the expectations. Pure. */
std::vector<Verdict> judge(const std::vector<sim::Expectation>& expectations,
                           const Recording& recording);

bool allPassed(const std::vector<Verdict>& verdicts);

/** A line for each, a second one with the reasons of a failed one, and how many passed. */
void writeVerdicts(std::ostream& out, const std::vector<Verdict>& verdicts);
