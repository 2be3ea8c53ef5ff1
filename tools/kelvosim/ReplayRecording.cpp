#include "ReplayRecording.h"

#include "ConfigWarnings.h"
#include "RunProblem.h"
#include "comparison/ComparisonText.h"
#include "expectations/Junit.h"
#include "perfetto/PerfettoTrace.h"
#include "report/HtmlReport.h"

namespace {

std::string problemText(const sim::Scenario& scenario) {
    const auto problem = runProblem(scenario);
    return problem ? problem->place + ": " + problem->what : "";
}

}  // namespace

ReplayRecording::ReplayRecording(const sim::Scenario& scenario, const std::string& file,
                                 const RecordingOptions& options)
      : mScenario(scenario), mRecorder(scenario, file), mOptions(options) {
    if (!options.report.empty()) {
        mReport.emplace(options.report);
    }
    if (!options.perfetto.empty()) {
        mPerfetto.emplace(options.perfetto);
    }
    if (!options.junit.empty()) {
        mJunit.emplace(options.junit);
    }
}

void ReplayRecording::watch(sim::VirtualPhone& phone) {
    phone.setZoneListener(
            [this](int32_t zone, std::optional<int32_t> temp) { mRecorder.onZone(zone, temp); });
    phone.setMomentListener([this](const sim::Plant* plant) { mRecorder.onMomentEnd(plant); });
}

std::vector<Verdict> ReplayRecording::write() {
    // A run for the sake of its outcome has another configuration than the scenario speaks of.
    std::vector<Verdict> verdicts;
    if (mOptions.outcome.empty()) {
        verdicts = judge(mScenario.expect, mRecorder.recording());
    }
    writeFiles(verdicts);
    return verdicts;
}

void ReplayRecording::writeFiles(const std::vector<Verdict>& verdicts) {
    const std::optional<ComparedRun> other = comparedRun();
    if (mReport) {
        writeHtmlReport(mReport->stream(), mRecorder.recording(),
                        {problemText(mScenario), configWarnings(mScenario), verdicts,
                         other ? &*other : nullptr});
        mReport->finish();
    }
    if (mPerfetto) {
        writePerfettoTrace(mPerfetto->stream(), mRecorder.recording());
        mPerfetto->finish();
    }
    if (mJunit) {
        const RunInfo& info = mRecorder.recording().info;
        writeJunit(mJunit->stream(), info.name.empty() ? info.scenario : info.name, verdicts);
        mJunit->finish();
    }
    if (!mOptions.outcome.empty()) {
        OutputFile outcome(mOptions.outcome);
        writeOutcome(outcome.stream(), outcomeOf(mRecorder.recording()));
        outcome.finish();
    }
    if (other) {
        OutputFile text("-");
        writeComparison(text.stream(), other->comparison, mRecorder.recording().info.scenario,
                        other->config);
        text.finish();
    }
}

std::optional<ComparedRun> ReplayRecording::comparedRun() const {
    if (mOptions.other.empty()) {
        return std::nullopt;
    }
    const Recording& own = mRecorder.recording();
    RunOutcome outcome = readOutcome(mOptions.other);
    Comparison comparison = compare(outcomeOf(own), outcome, own.info.durationMs);
    return ComparedRun{mOptions.otherConfig, std::move(outcome), std::move(comparison)};
}
