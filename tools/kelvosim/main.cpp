// kelvosim: the simulated phone.

#include "Check.h"
#include "CommandLine.h"
#include "Live.h"
#include "OtherConfig.h"
#include "Replay.h"
#include "common/NearestName.h"
#include "trace/TraceCommand.h"

namespace {

/** Adds the command and what it does; options live as long as the program. */
void addCheck(CLI::App& app) {
    static std::string scenario;
    CLI::App* const command = app.add_subcommand("check", "Say whether a scenario is correct");
    command->add_option("SCENARIO", scenario, "Scenario file")->type_name("FILE")->required();
    command_line::setExamples(*command, {"kelvosim check examples/hello/scenario.json"});
    command->callback([] { checkScenario(scenario); });
}

/** Other configurations, and what the runs with them tell each other. */
void addAgainst(CLI::App& command, RecordingOptions& options) {
    CLI::Option* const against = command.add_option(
            "--against", options.otherConfigs,
            "A configuration, plain or encrypted, that stands in for the scenario's main one in a "
            "run of its own, with the sub-file beside it if there is one (warmer_SM8450.json for "
            "warmer.json); says what differs, where first and by how much. May be repeated");
    against->type_name("FILE")->allow_extra_args(false);
    command.add_option("--comparison", options.comparison,
                       "Where the comparisons go for machines, one JSON object a line")
            ->type_name("FILE")
            ->needs(against);
    command.add_option(kOutcomeTo, options.outcome)->group("");
    command.add_option(kOutcomeOf, options.outcomeOf)->group("");
    command.add_option(kCompareWith, options.others)->allow_extra_args(false)->group("");
}

void addReplay(CLI::App& app, char** argv, int* status) {
    static ReplayOptions options;
    CLI::App* const command = app.add_subcommand(
            "replay",
            "Run a scenario on the daemon's engines in virtual time.\n"
            "Prints the events unless an option sends something somewhere; - is standard output");
    command->add_option("SCENARIO", options.scenario, "Scenario file")
            ->type_name("FILE")
            ->required();
    command->add_option("--events", options.events, "Where the events go, one JSON object a line")
            ->type_name("FILE");
    command->add_flag("--changes", options.changes,
                      "Let the events tell changes of the scene and of the level as well");
    command->add_option("--log", options.log, "Where the daemon's log goes")->type_name("FILE");
    command->add_option("--explain", options.explain,
                        "Where the reasons of the daemon's values go, one JSON object a line")
            ->type_name("FILE");
    command->add_option("--loglevel", options.logLevel,
                        "0 error lines, 1 info lines too, 2 debug lines too, negative: none; "
                        "else as the scenario's properties say")
            ->type_name("LEVEL");
    command->add_option("--report", options.recording.report,
                        "Where a page goes that shows the run and its reasons, HTML")
            ->type_name("FILE");
    command->add_option("--perfetto", options.recording.perfetto,
                        "Where a trace for ui.perfetto.dev goes, JSON")
            ->type_name("FILE");
    command->add_option("--junit", options.recording.junit,
                        "Where what became of the scenario's expectations goes, JUnit XML")
            ->type_name("FILE");
    addAgainst(*command, options.recording);
    command_line::setExamples(*command, {"kelvosim replay examples/hello/scenario.json",
                                         "kelvosim replay examples/game/scenario.json --report "
                                         "game.html --loglevel 1 --log game.log",
                                         "kelvosim replay examples/tuning/scenario.json --against "
                                         "examples/tuning/fitted.json --comparison -",
                                         "kelvosim replay examples/game/scenario.json --junit "
                                         "game.xml"});
    command->callback([argv, status] {
        if (!options.recording.outcome.empty()) {
            options.events = options.log = options.explain = "";  // asked of the other run
            options.recording.report = options.recording.perfetto = options.recording.junit = "";
            options.recording.comparison = "";
        } else if (options.events.empty() && options.log.empty() && options.explain.empty() &&
                   !options.recording.wantsFile() && options.recording.otherConfigs.empty()) {
            options.events = "-";
        }
        *status = replayScenario(options, argv);
    });
}

void addLive(CLI::App& app, int* status) {
    static LiveOptions options;
    CLI::App* const command = app.add_subcommand(
            "live", "Run a scenario in real time with kelvod as a process; a line a second");
    command->add_option("SCENARIO", options.scenario, "Scenario file")
            ->type_name("FILE")
            ->required();
    command->add_option("--root", options.root,
                        "Device root, an empty or new folder that is kept; else a temporary one")
            ->type_name("FOLDER");
    command->add_option("--speed", options.speed,
                        "Seconds of the scenario in one real second; the daemon keeps real time, "
                        "so at another speed than 1 its values are not the scenario's")
            ->type_name("FACTOR")
            ->check(CLI::Range(0.001, 100000.0))
            ->capture_default_str();
    command->add_option("KELVOD", options.kelvod,
                        "After --: the daemon and its arguments, else kelvod beside kelvosim")
            ->type_name("FILE");
    command_line::setExamples(
            *command,
            {"kelvosim live examples/hello/scenario.json --root phone",
             "kelvosim live examples/hello/scenario.json -- sh -c 'while :; do kelvod; done'"});
    command->callback([status] { *status = runLive(options); });
}

/** For the program itself, so it is not in the help. */
void addFramework(CLI::App& app) {
    static std::string scenario;
    CLI::App* const command = app.add_subcommand("framework")->group("");
    command->add_option("SCENARIO", scenario)->required();
    command->callback([] { playFramework(scenario); });
}

}  // namespace

int main(int argc, char** argv) {
    return command_line::run(
            argc, argv, "kelvosim", "A simulated phone for kelvod",
            [argv](CLI::App& app, int& status) {
                app.require_subcommand(1);
                addCheck(app);
                addReplay(app, argv, &status);
                addLive(app, &status);
                addTrace(app);
                addFramework(app);
            },
            common::suggestion);
}
