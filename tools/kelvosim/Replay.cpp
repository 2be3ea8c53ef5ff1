#include "Replay.h"

#include <android/log.h>
#include <unistd.h>

#include <array>
#include <iostream>
#include <memory>
#include <ostream>

#include "ChangeEvents.h"
#include "Check.h"
#include "ConfigWarnings.h"
#include "DecisionEvents.h"
#include "Failure.h"
#include "OtherConfig.h"
#include "OutputFile.h"
#include "ProgressLine.h"
#include "RunProblem.h"
#include "config/ConfigFiles.h"
#include "sim/process/RootedRun.h"
#include "sim/scenario/ScenarioParser.h"
#include "sim/tree/PhoneTree.h"
#include "sim/virtual/VirtualPhone.h"
#include "sim/virtual/VirtualTime.h"

namespace {

constexpr char kLogLevelProperty[] = "persist.sys.kelvo.loglevel";
constexpr char kSilent[] = "-1";

OutputFile* sLog = nullptr;

void writeLogLine(const __android_logger_data* data, const char* message) {
    std::array<char, 32> time;
    std::snprintf(time.data(), time.size(), "%.3f",
                  static_cast<double>(sim::VirtualTime::now()) / 1000);
    const char priority = data->priority == ANDROID_LOG_ERROR  ? 'E'
                          : data->priority == ANDROID_LOG_INFO ? 'I'
                                                               : 'D';
    sLog->stream() << time.data() << ' ' << priority << ' ' << message << '\n';
    sLog->noteLoss();
}

void dropLogLine(const __android_logger_data*, const char*) {}

/** The daemon reads its properties while the program is loaded: they must stand before. */
void prepareTree(sim::DeviceTree& tree, const sim::Scenario& scenario) {
    for (const auto& [name, value] : scenario.properties) {
        tree.setProperty(name, value);
    }
}

/** Null without a name. */
std::unique_ptr<OutputFile> openIfNamed(const std::string& name) {
    return name.empty() ? nullptr : std::make_unique<OutputFile>(name);
}

void writeLine(OutputFile& output, const sim::Event& event,
               common::JsonStyle style = common::JsonStyle::ASCII) {
    output.stream() << sim::toJsonLine(event, style) << '\n';
    output.noteLoss();
}

std::unique_ptr<OutputFile> openLog(const std::string& name) {
    std::unique_ptr<OutputFile> log = openIfNamed(name);
    sLog = log.get();
    __android_log_set_minimum_priority(ANDROID_LOG_VERBOSE);
    __android_log_set_logger(log != nullptr ? writeLogLine : dropLogLine);
    return log;
}

/** Whether lines of the run go to standard output. */
bool printsRun(const ReplayOptions& options) {
    return options.events == "-" || options.log == "-" || options.explain == "-";
}

/** Lines of the run and one that comes and goes would be in each other's way. */
bool writesToTerminal(const ReplayOptions& options) {
    return isatty(STDOUT_FILENO) == 1 && printsRun(options);
}

/** To standard output, or to standard error where something else has that for itself. */
void tellVerdicts(const std::vector<Verdict>& verdicts, const ReplayOptions& options) {
    if (verdicts.empty()) {
        return;
    }
    const bool isTaken = printsRun(options) || options.recording.wantsOutput();
    std::ostream& out = isTaken ? std::cerr : std::cout;
    writeVerdicts(out, verdicts);
    out.flush();
}

void run(sim::VirtualPhone& phone, const sim::Scenario& scenario, const ReplayOptions& options) {
    ProgressLine progress(options.recording.outcome.empty() ? "" : "other: ", scenario.durationMs,
                          !writesToTerminal(options));
    phone.run([&progress](int64_t timeMs) { progress.update(timeMs); });
}

int replay(const sim::Scenario& scenario, const ReplayOptions& options) {
    const auto log = openLog(options.log);
    const auto events = openIfNamed(options.events);
    const auto reasons = openIfNamed(options.explain);
    DecisionFanOut observers;
    DecisionEvents explanation([&](const sim::Event& event) {
        writeLine(*reasons, event, common::JsonStyle::SHORTEST);
    });
    if (reasons != nullptr) {
        observers.add(&explanation);
    }
    ChangeEvents changes([&](const sim::Event& event) { writeLine(*events, event); });
    if (events != nullptr && options.changes) {
        observers.add(&changes);
    }
    std::unique_ptr<ReplayRecording> recording;
    if (options.recording.wanted() || !scenario.expect.empty()) {
        recording =
                std::make_unique<ReplayRecording>(scenario, options.scenario, options.recording);
        observers.add(&recording->observer());
    }
    kelvo::setDecisionObserver(observers.empty() ? nullptr : &observers);
    sim::VirtualPhone phone(scenario);
    phone.setListener([&](const sim::Event& event) {
        if (events != nullptr) {
            writeLine(*events, event);
        }
        if (recording != nullptr) {
            recording->onEvent(event);
        }
    });
    if (recording != nullptr) {
        recording->watch(phone);
    }
    run(phone, scenario, options);
    __android_log_set_logger(dropLogLine);
    const std::vector<Verdict> verdicts =
            recording != nullptr ? recording->write() : std::vector<Verdict>();
    for (const auto* output : {&events, &log, &reasons}) {
        if (*output != nullptr) {
            (*output)->finish();
        }
    }
    tellVerdicts(verdicts, options);
    return allPassed(verdicts) ? 0 : command_line::kFailed;
}

/** Wrong configurations are refused before anything runs. */
void checkOthers(const std::vector<std::string>& others, const sim::Scenario& scenario,
                 const std::string& file) {
    for (const std::string& other : others) {
        readOtherConfig(other, sim::platformOf(scenario.nodes));
    }
    const auto& data = scenario.config.data;
    if (!others.empty() && data && data->find(kelvo::kMainFileMark) != std::string::npos) {
        command_line::complain("kelvosim",
                               "the copy on the data partition is in force, not the main file that "
                               "another one stands in for: " +
                                       file + ": config.data");
    }
}

void complainOfProblem(const sim::Scenario& scenario, const std::string& file) {
    if (const auto problem = runProblem(scenario, configWarnings(scenario))) {
        command_line::complain("kelvosim", problem->what + ": " + file + ": " + problem->place);
    }
}

}  // namespace

int replayScenario(const ReplayOptions& options, char** argv) {
    __android_log_set_minimum_priority(ANDROID_LOG_VERBOSE);
    __android_log_set_logger(dropLogLine);
    sim::Scenario scenario = sim::loadScenario(options.scenario);
    if (options.log.empty()) {
        scenario.properties[kLogLevelProperty] = kSilent;
    }
    if (options.logLevel) {
        scenario.properties[kLogLevelProperty] = std::to_string(*options.logLevel);
    }
    const RecordingOptions& recording = options.recording;
    if (!recording.outcome.empty()) {
        replaceConfig(scenario, readOtherConfig(recording.otherConfigs.at(recording.outcomeOf),
                                                sim::platformOf(scenario.nodes)));
    }
    if (sim::runsBelowOwnRoot()) {
        return replay(scenario, options);
    }
    checkTraceAndWarn(scenario, options.scenario);
    checkOthers(recording.otherConfigs, scenario, options.scenario);
    complainOfProblem(scenario, options.scenario);
    if (!recording.junit.empty() && scenario.expect.empty()) {
        command_line::complain("kelvosim", "nothing is expected, so there is nothing to report: " +
                                                   options.scenario + ": expect");
    }
    const auto prepare = [&](sim::DeviceTree& tree) { prepareTree(tree, scenario); };
    if (recording.otherConfigs.empty()) {
        return sim::runBelowOwnRoot(argv, prepare);
    }
    return runAllWays(argv, recording.otherConfigs.size(), prepare);
}
