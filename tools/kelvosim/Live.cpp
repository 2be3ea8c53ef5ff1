#include "Live.h"

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <sys/signalfd.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <optional>
#include <system_error>

#include "StatusLine.h"
#include "Supported.h"
#include "sim/DeviceTree.h"
#include "sim/LivePhone.h"
#include "sim/ScenarioParser.h"
#include "sim/Trace.h"

namespace {

namespace fs = std::filesystem;
using Clock = std::chrono::steady_clock;

constexpr int64_t kTickMs = 100;  // real time between two updates of the tree
constexpr int64_t kLineMs = 1000;

/** Turns the signals that end a run into something to poll for. */
class StopSignals {
  public:
    StopSignals() {
        signal(SIGCHLD, SIG_DFL);  // inherited as ignored, it would hide how the daemon ended
        sigset_t set;
        sigemptyset(&set);
        for (const int signal : {SIGINT, SIGTERM, SIGHUP, SIGCHLD}) {
            sigaddset(&set, signal);
        }
        sigprocmask(SIG_BLOCK, &set, nullptr);
        mFd = signalfd(-1, &set, SFD_NONBLOCK | SFD_CLOEXEC);
        if (mFd < 0) {
            throw std::system_error(errno, std::generic_category(), "signalfd");
        }
    }
    ~StopSignals() { close(mFd); }
    StopSignals(const StopSignals&) = delete;
    StopSignals& operator=(const StopSignals&) = delete;

    /** Waits up to `milliseconds`; true when the user wants the run to end. */
    bool wait(int64_t milliseconds) {
        pollfd fd{mFd, POLLIN, 0};
        poll(&fd, 1, static_cast<int>(std::max<int64_t>(milliseconds, 0)));
        signalfd_siginfo info{};
        bool stop = false;
        while (read(mFd, &info, sizeof(info)) == sizeof(info)) {
            stop = stop || info.ssi_signo != SIGCHLD;
        }
        return stop;
    }

  private:
    int mFd = -1;
};

/** The folder of this program, where the others are as well. */
std::string programFolder() {
    return fs::read_symlink("/proc/self/exe").parent_path();
}

std::vector<std::string> kelvodCommand(const LiveOptions& options) {
    return options.kelvod.empty() ? std::vector{programFolder() + "/kelvod"} : options.kelvod;
}

void refuseUsedFolder(const std::string& root) {
    if (fs::exists(root) && !(fs::is_directory(root) && fs::is_empty(root))) {
        throw std::runtime_error("not an empty folder: " + root);
    }
}

void reportEnding(const sim::ProcessEnding& process) {
    std::cerr << "kelvosim: " << process.program << " has ended with " << process.ending
              << "; the end of its log:\n";
    std::ifstream log(process.log);
    std::vector<std::string> lines;
    for (std::string line; std::getline(log, line);) {
        lines.push_back(line);
    }
    constexpr size_t kShown = 10;
    for (size_t i = lines.size() > kShown ? lines.size() - kShown : 0; i < lines.size(); ++i) {
        std::cerr << "  " << lines[i] << "\n";
    }
}

int64_t millisSince(Clock::time_point start) {
    return std::chrono::duration_cast<std::chrono::milliseconds>(Clock::now() - start).count();
}

/** How to reach the phone from another terminal. */
void printRoot(const std::string& root) {
    std::cout << "The phone is in " << root << "; from another terminal:\n"
              << "    KELVO_ROOT=" << root << " " << programFolder() << "/kelvoctl list"
              << std::endl;
}

/** Runs to the end of the scenario, a signal, or the end of one of the phone's processes. */
int runPhone(sim::LivePhone& phone, const sim::Scenario& scenario, double speed,
             StopSignals& signals) {
    const StatusLine status(scenario);
    std::cout << status.heading() << std::endl;
    const Clock::time_point start = Clock::now();
    int64_t nextLine = kLineMs;
    for (int64_t tick = 0;; tick += kTickMs) {
        if (signals.wait(tick - millisSince(start))) {
            return 0;
        }
        const auto time = std::min(static_cast<int64_t>(static_cast<double>(tick) * speed),
                                   scenario.durationMs);
        phone.advanceTo(time);
        if (const auto ending = phone.ending()) {
            reportEnding(*ending);
            return 1;
        }
        if (tick >= nextLine) {
            nextLine += kLineMs;
            if (!(std::cout << status.line(phone, time) << std::endl)) {
                return 0;  // nobody reads any more
            }
        }
        if (time >= scenario.durationMs) {
            return 0;
        }
    }
}

}  // namespace

int runLive(const LiveOptions& options) {
    const sim::Scenario scenario = sim::loadScenario(options.scenario);
    refuseUnsupported(scenario, options.scenario, sim::LivePhone::canPerform, "run live");
    sim::checkTrace(scenario);
    StopSignals signals;
    // A reader that goes away ends the run in order, so that nothing is left behind.
    signal(SIGPIPE, SIG_IGN);
    std::optional<sim::TemporaryFolder> temporary;
    std::string root = options.root;
    if (root.empty()) {
        temporary.emplace("kelvosim-");
        root = temporary->path();
    } else {
        refuseUsedFolder(root);
    }
    root = fs::absolute(root);
    sim::LivePhone phone(scenario, root, programFolder(), kelvodCommand(options));
    printRoot(root);
    return runPhone(phone, scenario, options.speed, signals);
}
