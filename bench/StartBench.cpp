// From the start of the process to its first line in "/proc/shell-temp", with a whole
// configuration of a real size, against the start of a program that does nothing.

#include <poll.h>
#include <sys/wait.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <string>
#include <vector>

#include "sim/process/BinderPlatform.h"
#include "sim/process/PhoneProcess.h"
#include "sim/scenario/ScenarioParser.h"
#include "sim/tree/DeviceTree.h"
#include "sim/tree/PhoneTree.h"
#include "sim/tree/ShellTempNode.h"
#include "sim/tree/TemporaryFolder.h"

namespace {

using Clock = std::chrono::steady_clock;

constexpr double kBudgetMs = 60;
constexpr int kRuns = 15;
constexpr int kLimitMs = 10000;

double millisSince(Clock::time_point start) {
    return std::chrono::duration<double, std::milli>(Clock::now() - start).count();
}

double median(std::vector<double> values) {
    std::ranges::sort(values);
    return values[values.size() / 2];
}

/** ms to the first line; negative when none came. */
double startKelvod(const sim::Scenario& scenario, const std::string& programs) {
    const sim::TemporaryFolder folder("kelvo-bench-");
    sim::DeviceTree tree(folder.path());
    sim::ShellTempNode node(tree);
    sim::PhoneTree(tree, scenario, [&](bool present) { node.setPresent(present); }).build();
    const sim::BinderPlatform binder(programs, folder.path(), folder.path());
    const Clock::time_point start = Clock::now();
    const sim::PhoneProcess process({programs + "/kelvod"}, folder.path(), "/dev/null");
    pollfd fd{node.fd(), POLLIN, 0};
    return poll(&fd, 1, kLimitMs) == 1 ? millisSince(start) : -1;
}

double startNothing() {
    const Clock::time_point start = Clock::now();
    sim::PhoneProcess process({"/bin/true"}, "/", "/dev/null");
    waitid(P_PID, static_cast<id_t>(process.pid()), nullptr, WEXITED | WNOWAIT);
    return millisSince(start);
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        std::fprintf(stderr, "usage: start_bench SCENARIO\n");
        return 2;
    }
    const sim::Scenario scenario = sim::loadScenario(argv[1]);
    const std::string programs = std::filesystem::read_symlink("/proc/self/exe").parent_path();
    std::vector<double> daemon;
    std::vector<double> floor;
    for (int i = 0; i < kRuns; ++i) {
        daemon.push_back(startKelvod(scenario, programs));
        floor.push_back(startNothing());
    }
    const double worst = *std::ranges::max_element(daemon);
    const bool allStarted = *std::ranges::min_element(daemon) > 0;
    std::printf(
            "start to first line: median %.1f ms, worst %.1f ms, %.1f x an empty program "
            "(budget %.0f ms)\n",
            median(daemon), worst, median(daemon) / median(floor), kBudgetMs);
    return allStarted && median(daemon) <= kBudgetMs ? 0 : 1;
}
