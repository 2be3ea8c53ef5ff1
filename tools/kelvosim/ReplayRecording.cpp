#include "ReplayRecording.h"

#include "ConfigWarnings.h"
#include "OtherConfig.h"
#include "RunProblem.h"
#include "common/JsonText.h"
#include "comparison/ComparisonJson.h"
#include "comparison/ComparisonText.h"
#include "expectations/Junit.h"
#include "perfetto/PerfettoTrace.h"
#include "report/HtmlReport.h"

namespace {

std::string problemText(const sim::Scenario& scenario, const std::vector<ReportWarning>& warnings) {
    const auto problem = runProblem(scenario, warnings);
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
    if (!options.comparison.empty()) {
        mComparison.emplace(options.comparison);
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
    const bool compares = !mOptions.outcome.empty() || !mOptions.others.empty();
    const RunOutcome own = compares ? outcomeOf(mRecorder.recording()) : RunOutcome{};
    const std::vector<ComparedRun> others = comparedRuns(own);
    if (mReport) {
        const std::vector<ReportWarning> warnings = configWarnings(mScenario);
        writeHtmlReport(mReport->stream(), mRecorder.recording(),
                        {problemText(mScenario, warnings), warnings, verdicts, others});
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
        writeOutcome(outcome.stream(), own);
        outcome.finish();
    }
    writeComparisons(own, others);
}

void ReplayRecording::writeComparisons(const RunOutcome& own,
                                       const std::vector<ComparedRun>& others) {
    if (others.empty()) {
        return;
    }
    const std::string& scenario = mRecorder.recording().info.scenario;
    if (mComparison) {
        for (const ComparedRun& other : others) {
            mComparison->stream() << common::compactJson(comparisonJson(own, other, scenario),
                                                         common::JsonStyle::AS_WRITTEN)
                                  << '\n';
        }
        mComparison->finish();
    }
    if (mOptions.comparison == "-") {
        return;
    }
    OutputFile text("-");
    for (const ComparedRun& other : others) {
        text.stream() << (&other == &others.front() ? "" : "\n");
        writeComparison(text.stream(), own, other, scenario);
    }
    text.finish();
}

std::vector<ComparedRun> ReplayRecording::comparedRuns(const RunOutcome& own) const {
    std::vector<ComparedRun> runs;
    if (mOptions.others.empty()) {
        return runs;
    }
    const RunInfo& info = mRecorder.recording().info;
    for (size_t i = 0; i < mOptions.others.size(); ++i) {
        const std::string& config = mOptions.otherConfigs.at(i);
        RunOutcome outcome = readOutcome(mOptions.others[i]);
        Comparison comparison = compare(own, outcome, info.durationMs);
        runs.push_back({config, readOtherConfig(config, info.platform).subFile, std::move(outcome),
                        std::move(comparison)});
    }
    return runs;
}
