#pragma once

#include <optional>
#include <string>
#include <vector>

#include "OutputFile.h"
#include "comparison/Comparison.h"
#include "expectations/Verdict.h"
#include "recording/Recorder.h"
#include "sim/virtual/VirtualPhone.h"

/** Where a replay's recording goes; empty: nowhere, "-": standard output. */
struct RecordingOptions {
    std::string report;      // an HTML page
    std::string perfetto;    // a trace
    std::string junit;       // what became of the expectations, for continuous integration
    std::string comparison;  // comparisons for machines; those for people go to standard output
    std::vector<std::string> otherConfigs;  // files, as the user named them
    std::string outcome;                    // what a run with one of them is compared by
    size_t outcomeOf = 0;                   // with which
    std::vector<std::string> others;        // outcomes of all of them

    /** Whether standard output is for one of them. */
    bool wantsOutput() const {
        return report == "-" || perfetto == "-" || junit == "-" || comparison == "-" ||
               !others.empty();
    }
    /** Whether a user asked for a file. */
    bool wantsFile() const { return !report.empty() || !perfetto.empty() || !junit.empty(); }
    bool wanted() const { return wantsFile() || !outcome.empty() || !others.empty(); }
};

/** The recording of a replay and the files that are made of it. */
class ReplayRecording {
  public:
    /** `scenario` lives longer than this, `file` is how the user named it. Opens the files. */
    ReplayRecording(const sim::Scenario& scenario, const std::string& file,
                    const RecordingOptions& options);

    /** Whom the daemon tells of its decisions. */
    kelvo::DecisionObserver& observer() { return mRecorder; }
    /** Before the phone starts; events are for onEvent(). */
    void watch(sim::VirtualPhone& phone);
    void onEvent(const sim::Event& event) { mRecorder.onEvent(event); }
    /**
     * When the phone has run: writes the files and returns what became of the scenario's
     * expectations. What judges the configuration logs. Throws std::runtime_error.
     */
    std::vector<Verdict> write();

  private:
    void writeFiles(const std::vector<Verdict>& verdicts);
    std::vector<ComparedRun> comparedRuns(const RunOutcome& own) const;
    void writeComparisons(const RunOutcome& own, const std::vector<ComparedRun>& others);

    const sim::Scenario& mScenario;
    Recorder mRecorder;
    std::optional<OutputFile> mReport;
    std::optional<OutputFile> mPerfetto;
    std::optional<OutputFile> mJunit;
    std::optional<OutputFile> mComparison;
    const RecordingOptions mOptions;
};
