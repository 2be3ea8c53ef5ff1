#pragma once

#include <optional>
#include <string>

#include "OutputFile.h"
#include "comparison/Comparison.h"
#include "recording/Recorder.h"
#include "sim/virtual/VirtualPhone.h"

/** Where a replay's recording goes; empty: nowhere, "-": standard output. */
struct RecordingOptions {
    std::string report;       // an HTML page
    std::string perfetto;     // a trace
    std::string outcome;      // what a run with another configuration is compared by
    std::string other;        // the outcome of that run; the comparison goes to standard output
    std::string otherConfig;  // its file, as the user named it

    /** Whether a user asked for a file. */
    bool wantsFile() const { return !report.empty() || !perfetto.empty(); }
    bool wanted() const { return wantsFile() || !outcome.empty() || !other.empty(); }
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
    /** When the phone has run; what judges the configuration logs. Throws std::runtime_error. */
    void write();

  private:
    std::optional<ComparedRun> comparedRun() const;

    const sim::Scenario& mScenario;
    Recorder mRecorder;
    std::optional<OutputFile> mReport;
    std::optional<OutputFile> mPerfetto;
    const RecordingOptions mOptions;
};
