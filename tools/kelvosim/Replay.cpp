#include "Replay.h"

#include <android/log.h>

#include <array>
#include <fstream>
#include <iostream>
#include <memory>
#include <stdexcept>

#include "DecisionEvents.h"
#include "sim/RootedRun.h"
#include "sim/ScenarioParser.h"
#include "sim/Trace.h"
#include "sim/VirtualPhone.h"
#include "sim/VirtualTime.h"

namespace {

constexpr char kLogLevelProperty[] = "persist.sys.kelvo.loglevel";
constexpr char kSilent[] = "-1";

/** A file or standard output. */
class Output {
  public:
    explicit Output(const std::string& name) : mName(name) {
        if (name != "-") {
            mFile.open(name, std::ios::binary | std::ios::trunc);
            check();
        }
    }
    std::ostream& stream() { return mName == "-" ? std::cout : mFile; }
    void finish() {
        stream().flush();
        check();
    }

  private:
    void check() {
        if (!stream()) {
            throw std::runtime_error("cannot be written: " + mName);
        }
    }

    const std::string mName;
    std::ofstream mFile;
};

std::ostream* sLogStream = nullptr;

void writeLogLine(const __android_logger_data* data, const char* message) {
    std::array<char, 32> time;
    std::snprintf(time.data(), time.size(), "%.3f",
                  static_cast<double>(sim::VirtualTime::now()) / 1000);
    const char priority = data->priority == ANDROID_LOG_ERROR  ? 'E'
                          : data->priority == ANDROID_LOG_INFO ? 'I'
                                                               : 'D';
    *sLogStream << time.data() << ' ' << priority << ' ' << message << '\n';
}

void dropLogLine(const __android_logger_data*, const char*) {}

/** The daemon reads its properties while the program is loaded: they must stand before. */
void prepareTree(sim::DeviceTree& tree, const sim::Scenario& scenario) {
    for (const auto& [name, value] : scenario.properties) {
        tree.setProperty(name, value);
    }
}

int replay(const sim::Scenario& scenario, const ReplayOptions& options) {
    std::unique_ptr<Output> log;
    __android_log_set_minimum_priority(ANDROID_LOG_VERBOSE);
    __android_log_set_logger(dropLogLine);
    if (!options.log.empty()) {
        log = std::make_unique<Output>(options.log);
        sLogStream = &log->stream();
        __android_log_set_logger(writeLogLine);
    }
    std::unique_ptr<Output> events;
    std::unique_ptr<Output> reasons;
    DecisionFanOut observers;
    std::optional<DecisionEvents> explanation;
    if (!options.explain.empty()) {
        reasons = std::make_unique<Output>(options.explain);
        explanation.emplace([&](const sim::Event& event) {
            reasons->stream() << sim::toJsonLine(event) << '\n';
        });
        observers.add(&*explanation);
    }
    kelvo::setDecisionObserver(observers.empty() ? nullptr : &observers);
    sim::VirtualPhone phone(scenario);
    if (!options.events.empty()) {
        events = std::make_unique<Output>(options.events);
        phone.setListener([&](const sim::Event& event) {
            events->stream() << sim::toJsonLine(event) << '\n';
        });
    }
    phone.run();
    for (const auto& output : {&events, &log, &reasons}) {
        if (*output != nullptr) {
            (*output)->finish();
        }
    }
    return 0;
}

}  // namespace

int replayScenario(const ReplayOptions& options, char** argv) {
    sim::Scenario scenario = sim::loadScenario(options.scenario);
    if (options.log.empty()) {
        scenario.properties[kLogLevelProperty] = kSilent;
    }
    if (options.logLevel) {
        scenario.properties[kLogLevelProperty] = std::to_string(*options.logLevel);
    }
    if (sim::runsBelowOwnRoot()) {
        return replay(scenario, options);
    }
    sim::checkTrace(scenario);
    return sim::runBelowOwnRoot(argv, [&](sim::DeviceTree& tree) { prepareTree(tree, scenario); });
}
