// What the daemon costs at its own pace: CPU of the whole process a cycle, against a bare process
// that only reads the nodes and writes the line at the same pace; and how often it wakes.

#include <fcntl.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <time.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <thread>

#include "BenchPhone.h"
#include "ProcessCpu.h"
#include "sim/process/BinderPlatform.h"
#include "sim/process/PhoneProcess.h"
#include "sim/tree/DeviceTree.h"
#include "sim/tree/PhoneTree.h"
#include "sim/tree/TemporaryFolder.h"

namespace {

constexpr double kCpuBudget = 1.4;
constexpr int kSettleSeconds = 3;
constexpr int kDefaultInterval = 5;  // s

std::string programFolder() {
    return std::filesystem::read_symlink("/proc/self/exe").parent_path();
}

void sleepSeconds(double seconds) {
    std::this_thread::sleep_for(std::chrono::duration<double>(seconds));
}

/** The floor: one pass a second over the same nodes, and the line. */
[[noreturn]] void runBare(const std::string& root) {
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    const std::vector<std::string> paths = bench::zonePaths(root);
    const std::string node = root + "/proc/shell-temp";
    timespec deadline{};
    clock_gettime(CLOCK_MONOTONIC, &deadline);
    while (true) {
        bench::readNodes(paths);
        const int fd = open(node.c_str(), O_WRONLY | O_CLOEXEC);
        if (write(fd, "0 40000\n", 8) != 8) {
            _exit(1);
        }
        close(fd);
        ++deadline.tv_sec;
        clock_nanosleep(CLOCK_MONOTONIC, TIMER_ABSTIME, &deadline, nullptr);
    }
}

struct Phone {
    explicit Phone(const sim::Scenario& phoneScenario)
          : scenario(phoneScenario), tree(folder.path()), phone(tree, scenario) {
        phone.build();
    }
    sim::TemporaryFolder folder{"kelvo-bench-"};
    const sim::Scenario scenario;
    sim::DeviceTree tree;
    sim::PhoneTree phone;
};

/** A phone with the daemon on it. */
struct DaemonPhone : Phone {
    explicit DaemonPhone(const sim::Scenario& phoneScenario) : Phone(phoneScenario) {}
    sim::BinderPlatform binder{programFolder(), tree.root(), folder.path()};
    sim::PhoneProcess kelvod{{programFolder() + "/kelvod"}, tree.root(), "/dev/null"};
};

/** Seconds in which both run; every second one model's value moves by a tenth of a degree. */
bool measureCpu(int seconds) {
    sim::Scenario scenario = bench::phone();
    scenario.properties["persist.sys.shelltemp.interval"] = "1";
    DaemonPhone daemon(scenario);
    Phone bare(scenario);
    sleepSeconds(0.4);  // their passes must not fall together
    const pid_t barePid = fork();
    if (barePid == 0) {
        runBare(bare.tree.root());
    }
    int32_t temp = 40000;
    int64_t kelvodStart = 0;
    int64_t bareStart = 0;
    for (int second = -kSettleSeconds; second < seconds; ++second) {
        if (second == 0) {
            kelvodStart = bench::cpuNanos(daemon.kelvod.pid());
            bareStart = bench::cpuNanos(barePid);
        }
        temp += 500;
        if (temp > 60000) {
            temp = 40000;
        }
        daemon.tree.setZoneTemp(0, temp);
        bare.tree.setZoneTemp(0, temp);
        sleepSeconds(1);
    }
    const auto perCycle = [&](pid_t pid, int64_t start) {
        return static_cast<double>(bench::cpuNanos(pid) - start) / 1000 / seconds;
    };
    const double kelvodMicros = perCycle(daemon.kelvod.pid(), kelvodStart);
    const double bareMicros = perCycle(barePid, bareStart);
    kill(barePid, SIGKILL);
    waitpid(barePid, nullptr, 0);
    std::printf("paced cycle: kelvod %.0f us, bare process %.0f us: %.2f x (budget %.1f)\n",
                kelvodMicros, bareMicros, kelvodMicros / bareMicros, kCpuBudget);
    return kelvodMicros <= kCpuBudget * bareMicros;
}

/** One wake-up a cycle of the fitting thread, none of another. */
bool measureWakeUps(int seconds) {
    DaemonPhone phone(bench::phone());
    sleepSeconds(kSettleSeconds);
    const auto before = bench::voluntarySwitches(phone.kelvod.pid());
    sleepSeconds(seconds);
    bool good = true;
    for (const auto& [name, count] : bench::voluntarySwitches(phone.kelvod.pid())) {
        const int64_t wakeUps = count - before.at(name);
        const int64_t budget = name == "st-fitting" ? seconds / kDefaultInterval : 0;
        std::printf("wake-ups in %d s: %-10s %lld (budget %lld)\n", seconds, name.c_str(),
                    static_cast<long long>(wakeUps), static_cast<long long>(budget));
        good = good && wakeUps <= budget;
    }
    return good;
}

}  // namespace

int main(int argc, char** argv) {
    const int seconds = argc > 1 ? std::atoi(argv[1]) : 60;
    if (seconds < kDefaultInterval) {
        std::fprintf(stderr, "paced_bench: expected at least %d seconds\n", kDefaultInterval);
        return 2;
    }
    const bool cpu = measureCpu(seconds);
    const bool wakeUps = measureWakeUps(seconds / kDefaultInterval * kDefaultInterval);
    return cpu && wakeUps ? 0 : 1;
}
