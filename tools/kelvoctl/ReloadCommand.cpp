#include <chrono>
#include <thread>

#include "Commands.h"
#include "KelvoCall.h"
#include "Phone.h"
#include "ServiceDump.h"
#include "client/KelvodLog.h"

namespace kelvoctl {

namespace {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

constexpr auto kReloadDelay = 3s;  // the daemon's
constexpr auto kLimit = 10s;       // a daemon that is this late says nothing
constexpr auto kPoll = 100ms;
constexpr auto kEnginesLast = 300ms;  // what the engines find is said after the models are loaded

struct ReloadOptions {
    std::string log;  // empty: the phone's own
    bool noWait = false;
};

/** What came of a reload. */
struct Outcome {
    std::optional<bool> taken;  // none: nothing tells
    std::string said;           // the daemon's reason, or why nothing tells
};

/** True when it holds before the limit. */
template <typename Condition>
bool becomesTrue(Clock::time_point start, Condition holds) {
    while (!holds()) {
        if (Clock::now() - start > kLimit) {
            return false;
        }
        std::this_thread::sleep_for(kPoll);
    }
    return true;
}

/** `log` has been read up to the call. */
Outcome askLog(client::KelvodLog& log, Clock::time_point start) {
    const int32_t loads = log.loads();
    const int32_t refusals = log.refusals();
    const bool loaded = becomesTrue(start, [&] {
        log.update();
        return log.loads() > loads || log.refusals() > refusals;
    });
    std::this_thread::sleep_for(kEnginesLast);
    log.update();
    const std::string said = log.configError().value_or("");
    if (log.refusals() > refusals) {
        return {false, said};
    }
    return loaded ? Outcome{true, said}
                  : Outcome{{}, "the daemon's log does not say so: " + log.path()};
}

/** Where there is no log another version shows that the document is another. */
Outcome askVersion(const std::string& before, const std::string& log) {
    std::this_thread::sleep_for(kReloadDelay + kEnginesLast);
    const std::string now = dumpedConfigVersion();
    if (now != before) {
        return {true, "version " + before + " gave way to " + now};
    }
    return {{}, "the version is still " + now + ", and there is no log of the daemon: " + log};
}

void tell(const Outcome& outcome, const std::string& place, const Output& output) {
    const Json::Value taken = outcome.taken ? Json::Value(*outcome.taken) : Json::Value();
    const Json::Value said = outcome.said.empty() ? Json::Value() : Json::Value(outcome.said);
    const std::string remark = outcome.said.empty() ? "" : " (" + outcome.said + ")";
    if (outcome.taken != false || output.json) {
        output.print({{"ok", true}, {"taken", taken}, {"said", said}},
                     outcome.taken ? "the configuration was taken" + remark
                                   : "reloaded; cannot know whether the configuration was taken" +
                                             remark);
    }
    if (outcome.taken == false) {
        throw Failure("the configuration was not taken, the one before stays" + remark, place);
    }
}

void reload(const ReloadOptions& options, const Output& output) {
    client::KelvodLog log(options.log.empty() ? kelvodLogPath() : options.log);
    if (options.noWait) {
        callKelvo(kelvo::RELOAD_CONFIG, {});
        return output.print({{"ok", true}}, "ok");
    }
    const bool logged = log.update();
    if (!logged && !options.log.empty()) {
        throw Failure("cannot be read", options.log);
    }
    const std::string version = logged ? "" : dumpedConfigVersion();
    const Clock::time_point start = Clock::now();
    callKelvo(kelvo::RELOAD_CONFIG, {});
    tell(logged ? askLog(log, start) : askVersion(version, log.path()), log.path(), output);
}

}  // namespace

void addReload(CLI::App& app, Output& output) {
    static ReloadOptions options;
    CLI::App* const command = app.add_subcommand(
            "reload",
            "Read the configuration again, in three seconds, and say whether it was taken");
    command->add_option("--log", options.log,
                        "The daemon's log, which says so; else data/kelvod.log below the device "
                        "root, or without it a dump")
            ->type_name("FILE");
    command->add_flag("--no-wait", options.noWait, "End at once and say nothing of it");
    command_line::setExamples(*command, {"kelvoctl reload", "kelvoctl reload --no-wait"});
    command->callback([&] { reload(options, output); });
}

}  // namespace kelvoctl
