#include "Live.h"

#include <android/log.h>
#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <sys/signalfd.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <optional>
#include <system_error>

#include "Check.h"
#include "Failure.h"
#include "KelvodView.h"
#include "StatusLine.h"
#include "Supported.h"
#include "client/KelvodLog.h"
#include "sim/live/FrameworkProcess.h"
#include "sim/live/LiveFramework.h"
#include "sim/live/LivePhone.h"
#include "sim/scenario/ScenarioParser.h"
#include "sim/tree/TemporaryFolder.h"

namespace {

namespace fs = std::filesystem;
using Clock = std::chrono::steady_clock;

constexpr int64_t kTickMs = 100;  // real time between two updates of the tree
constexpr int64_t kLineMs = 1000;
constexpr std::chrono::milliseconds kLast(2000);      // for an answer after the scenario's end
constexpr std::chrono::milliseconds kViewLimit(500);  // for the daemon's answers to a line

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

/** Its loops, delays and averages keep real time: only a replay has them in the phone's. */
void warnOfSpeed(double speed) {
    if (speed != 1) {
        std::cerr
                << "kelvosim: warning: the phone's time runs " << speed
                << " times as fast as the daemon's, whose values are not those of the scenario at "
                   "its own pace; \"replay\" gives these\n";
    }
}

std::FILE* sLog = nullptr;

void logLine(const __android_logger_data* data, const char* message) {
    std::fprintf(sLog, "%s: %s\n", data->tag != nullptr ? data->tag : "", message);
    std::fflush(sLog);
}

/** Nothing of the binder library's may stand between the lines. */
void logTo(const std::string& file) {
    sLog = std::fopen(file.c_str(), "ae");
    if (sLog == nullptr) {
        throw std::system_error(errno, std::generic_category(), file);
    }
    __android_log_set_logger(logLine);
}

/** Prints the lines of a run, each about the phone as it is then. */
class Lines {
  public:
    Lines(const sim::Scenario& scenario, sim::LivePhone& phone, KelvodView& view,
          const std::string& log)
          : mPhone(phone), mView(view), mLine(scenario), mLog(log) {
        std::cout << StatusLine::heading() << std::endl;
    }
    /** A reader that goes away ends the run in order, so that nothing is left behind. */
    void print(int64_t timeMs) {
        const auto kelvod = mView.look(kViewLimit);
        mLog.update();
        std::cout << mLine.line({timeMs, kelvod, mLog.scene(), mPhone.hottestZone()}) << std::endl;
        command_line::checkWritten(std::cout, "standard output");
    }

  private:
    sim::LivePhone& mPhone;
    KelvodView& mView;
    StatusLine mLine;
    client::KelvodLog mLog;
};

/** Runs to the end of the scenario, a signal, or the end of one of the phone's processes. */
int runPhone(sim::LivePhone& phone, const sim::Scenario& scenario, double speed, Lines& lines,
             StopSignals& signals) {
    const Clock::time_point start = Clock::now();
    int64_t nextLine = kLineMs;
    for (int64_t tick = 0;; tick += kTickMs) {
        if (signals.wait(tick - millisSince(start))) {
            return 0;
        }
        const auto time = static_cast<int64_t>(static_cast<double>(tick) * speed);
        phone.advanceTo(time);
        if (const auto ending = phone.ending()) {
            reportEnding(*ending);
            return 1;
        }
        if (tick >= nextLine) {
            nextLine += kLineMs;
            lines.print(std::min(time, scenario.durationMs));
        }
        if (time >= scenario.durationMs && (phone.isIdle() || phone.isHeldUp(kLast))) {
            return 0;
        }
    }
}

}  // namespace

int runLive(const LiveOptions& options) {
    const sim::Scenario scenario = sim::loadScenario(options.scenario);
    refuseProblems(scenario, options.scenario, sim::LiveFramework::problem);
    checkTraceAndWarn(scenario, options.scenario);
    StopSignals signals;
    std::optional<sim::TemporaryFolder> temporary;
    std::string root = options.root;
    if (root.empty()) {
        temporary.emplace("kelvosim-");
        root = temporary->path();
    } else {
        refuseUsedFolder(root);
    }
    root = fs::absolute(root);
    warnOfSpeed(options.speed);
    std::unique_ptr<KelvodView> view;  // outlives the daemon that it may be waiting for
    sim::LivePhone phone(scenario, root, programFolder(), kelvodCommand(options),
                         {programFolder() + "/kelvosim", "framework", options.scenario});
    logTo(root + "/data/kelvosim.log");
    view = std::make_unique<KelvodView>();
    printRoot(root);
    Lines lines(scenario, phone, *view, root + "/data/kelvod.log");
    return runPhone(phone, scenario, options.speed, lines, signals);
}

void playFramework(const std::string& scenario) {
    sim::runFrameworkProcess(sim::loadScenario(scenario));
}
