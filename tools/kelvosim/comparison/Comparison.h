#pragma once

#include <array>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "comparison/RunOutcome.h"

// Where and by how much two replays of one scenario differ. Pure. "Own" is the run with the
// scenario's configuration, "other" the one with another.

/** A time for which a figure is one thing in one run and another in the other. */
struct Stretch {
    int64_t fromMs = 0;
    int64_t toMs = 0;
    std::optional<int32_t> own;  // none: there is no figure
    std::optional<int32_t> other;
};

/** The same of a state with a name; empty: there is none. */
struct TextStretch {
    int64_t fromMs = 0;
    int64_t toMs = 0;
    std::string own;
    std::string other;
};

/** How far two temperatures are apart. A point of time weighs as long as it lasts. */
struct FigureDifference {
    std::optional<Stretch> first;    // where they begin to differ; none when they never do
    std::optional<Stretch> largest;  // the first of the largest, where both have a figure
    double meanAbsolute = 0;         // m°C, over all time in which both have a figure
    double meanSigned = 0;           // m°C, other less own, likewise
    int64_t comparedMs = 0;          // that time
    int64_t differentMs = 0;         // time for which they differ
};

struct NamedDifference {
    std::string name;
    FigureDifference difference;
};

/**
 * What became of a notification in the other run. One at another time is of the same level, status
 * and whole degrees and at most ten minutes away.
 */
enum class Fate { SAME, OTHER_VALUES, OTHER_TIME, ONLY_OWN, ONLY_OTHER };
constexpr size_t kFates = 5;

/** A notification that is not the same in both runs; one of the two may be missing. */
struct NotificationDifference {
    Fate fate = Fate::SAME;
    std::optional<Notification> own;
    std::optional<Notification> other;

    int64_t timeMs() const { return own ? own->timeMs : other->timeMs; }
    const Notification& notification() const { return own ? *own : *other; }
};

struct Comparison {
    int64_t endMs = 0;  // of the runs
    FigureDifference shell;
    std::vector<NamedDifference> models;  // of all that either run has, by name
    FigureDifference ambient;
    std::vector<NamedDifference> heat;  // by component
    std::vector<Stretch> levels;        // where they differ, ascending by time
    std::vector<Stretch> statuses;
    std::vector<TextStretch> scenes;
    std::vector<TextStretch> heatSources;
    std::map<std::string, std::array<int64_t, kFates>> counts;  // by kind, then Fate
    std::vector<NotificationDifference> notifications;          // ascending by time

    bool identical() const;
};

/** The other run, for who shows it beside the scenario's own. */
struct ComparedRun {
    std::string config;  // the file of its configuration, as the user named it
    std::string sub;     // the sub-file with it; empty: the scenario's own
    RunOutcome outcome;
    Comparison comparison;
};

/** Compares up to `endMs` and with it; the last stretch of a figure ends 1 ms behind it. */
Comparison compare(const RunOutcome& own, const RunOutcome& other, int64_t endMs);
