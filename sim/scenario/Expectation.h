#pragma once

#include <cstdint>
#include <limits>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace sim {

/** What an expectation can be about, besides calls to listeners. */
enum class Figure {
    SHELL,        // m°C, as clients are told
    MODEL,        // m°C, the published output of one model
    AMBIENT,      // m°C, the estimate
    LEVEL,        // as decided
    STATUS,       // as transaction 4 answers
    SCENE,        // whose models the passes evaluate
    HEAT_SOURCE,  // the main component of the latest question about heat
};

/** Both ends count. */
struct ValueRange {
    int64_t least = std::numeric_limits<int64_t>::min();
    int64_t most = std::numeric_limits<int64_t>::max();

    bool holds(int64_t value) const { return value >= least && value <= most; }
};

/** A figure and what it is to be at one moment. */
struct Condition {
    Figure figure = Figure::SHELL;
    std::string model;               // of MODEL
    ValueRange range;                // of figures that are numbers
    std::vector<std::string> names;  // of SCENE and HEAT_SOURCE: one of them
    std::string text;                // for people: "shell above 43 °C"
};

/** Calls to listeners that are alike. */
struct ExpectedCall {
    std::string event;                                       // "notify_thermal_status"
    std::string listener;                                    // empty: any
    std::vector<std::pair<std::string, ValueRange>> values;  // by name, as in the events
    std::optional<ValueRange> count;                         // none: at least one
    std::string text;                                        // for people
};

/** What a scenario says that has to come of it. Times are ms since t = 0. */
struct Expectation {
    enum class When {
        AT,      // at fromMs
        BY,      // at some moment of the time from fromMs to toMs
        ALWAYS,  // at every moment of it
        NEVER,   // at none
    };

    std::string name;   // empty: it goes by its text
    std::string place;  // "expect[0]"
    When when = When::AT;
    int64_t fromMs = 0;
    int64_t toMs = 0;                   // not before fromMs
    std::vector<Condition> conditions;  // all at one moment; empty for a call
    std::optional<ExpectedCall> call;
    std::string text;  // for people: "by 315 s: status 2"
};

}  // namespace sim
