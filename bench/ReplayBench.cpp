// A day of a phone with 24 zones, its trace a row a second, above 38 °C for half of it so that the
// heat monitor runs: the CPU of its replay, against the bare file operations that the daemon has to
// make. Then the memory of an hour against that of the day.

#include <fcntl.h>
#include <json/writer.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "BenchPhone.h"
#include "sim/tree/DeviceTree.h"
#include "sim/tree/TemporaryFolder.h"

namespace {

constexpr double kBudgetSeconds = 1;
constexpr double kMemoryBudget = 1.05;  // of a day to an hour
constexpr int kHour = 3600;             // s
constexpr int kDay = 24 * kHour;
constexpr int kSwing = 4 * kHour;  // from cool to warm and back
constexpr int kPassSeconds = 5;
constexpr int kThreads = 64;
constexpr int kRuns = 3;

struct Cost {
    double seconds = 0;  // of CPU
    long memory = 0;     // KiB, the most of a process
};

double seconds(const rusage& usage) {
    const auto of = [](const timeval& time) {
        return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) * 1e-6;
    };
    return of(usage.ru_utime) + of(usage.ru_stime);
}

/** m°C: the shell, 0.8 of it and 4 °C, is above 38 °C for half of a swing, and never quite still.
 */
int temperature(int zone, int second) {
    const int phase = second % kSwing;
    const int rise = std::min(phase, kSwing - phase);
    return 36300 + rise * 100 / (kSwing / 200) + (second * 7 + zone * 131) % 53;
}

void writeTrace(const std::string& path) {
    std::ofstream trace(path);
    trace << "t";
    for (int zone = 0; zone < bench::kZones; ++zone) {
        trace << ",zone" << zone;
    }
    for (int second = 0; second <= kDay; ++second) {
        trace << '\n' << second;
        for (int zone = 0; zone < bench::kZones; ++zone) {
            trace << ',' << temperature(zone, second);
        }
    }
}

Json::Value action(const char* name) {
    Json::Value value;
    value["t"] = 0;
    value["do"] = name;
    return value;
}

std::string writeScenario(const std::string& folder, int duration) {
    const sim::Scenario phone = bench::heatedPhone();
    Json::Value json;
    json["duration"] = duration;
    json["trace"] = "trace.csv";
    json["config"]["main"] = "kelvo.json";
    for (const sim::NodeChange& node : phone.nodes) {
        json["nodes"][node.path] = *node.text;
    }
    for (int zone = 0; zone < bench::kZones; ++zone) {
        Json::Value& spec = json["zones"].append({});
        spec["type"] = phone.zones[static_cast<size_t>(zone)].type;
        spec["temp"] = temperature(zone, 0);
    }
    Json::Value listen = action("listen");
    listen["id"] = "framework";
    Json::Value threads = action("taskstats");
    threads["text"] = bench::taskStatistics(kThreads);
    json["timeline"].append(listen);
    json["timeline"].append(threads);
    std::ofstream(folder + "/kelvo.json") << *phone.config.main;
    const std::string file = folder + "/" + std::to_string(duration) + ".json";
    std::ofstream(file) << json;
    return file;
}

/** A replay and all processes that it starts; no CPU when it failed. */
Cost replay(const std::string& scenario, const std::string& events) {
    const std::string program =
            std::filesystem::read_symlink("/proc/self/exe").parent_path() / "kelvosim";
    const pid_t child = fork();
    if (child == 0) {
        execl(program.c_str(), "kelvosim", "replay", scenario.c_str(), "--events", events.c_str(),
              nullptr);
        _exit(127);
    }
    int status = 0;
    rusage usage{};
    const bool done = wait4(child, &status, 0, &usage) == child && status == 0;
    return done ? Cost{seconds(usage), usage.ru_maxrss} : Cost{};
}

/** How many lines have this kind of event. */
int64_t count(const std::string& events, const std::string& event) {
    std::ifstream file(events);
    int64_t lines = 0;
    for (std::string line; std::getline(file, line);) {
        lines += line.find("\"event\":\"" + event) != std::string::npos ? 1 : 0;
    }
    return lines;
}

void writeNode(const std::string& path) {
    const int fd = open(path.c_str(), O_WRONLY | O_CLOEXEC);
    if (fd < 0 || write(fd, "0 36500\n", 8) != 8) {
        std::perror(path.c_str());
    }
    close(fd);
}

/** CPU of the daemon's reads and writes alone, on the same kind of folder. */
double floorSeconds(int64_t writes) {
    const sim::TemporaryFolder folder("kelvo-bench-", sim::temporaryMemory());
    sim::DeviceTree tree(folder.path());
    for (int zone = 0; zone < bench::kZones; ++zone) {
        tree.addZone(zone, "zone", 36500);
    }
    for (const sim::NodeChange& node : bench::heatedPhone().nodes) {
        tree.setNode(node.path, *node.text);
    }
    tree.setNode("/proc/shell-temp", "");
    const std::vector<std::string> zones = bench::zonePaths(folder.path());
    const std::vector<std::string> heat = bench::heatNodePaths(folder.path());
    rusage before{};
    rusage after{};
    getrusage(RUSAGE_SELF, &before);
    for (int pass = 0; pass < kDay / kPassSeconds; ++pass) {
        bench::readNodes(zones);
        if (pass % 2 == 0) {
            bench::readNodes(heat);
        }
    }
    for (int64_t i = 0; i < writes; ++i) {
        writeNode(tree.hostPath("/proc/shell-temp"));
    }
    getrusage(RUSAGE_SELF, &after);
    return seconds(after) - seconds(before);
}

}  // namespace

int main() {
    const sim::TemporaryFolder folder("kelvo-bench-");
    const std::string events = folder.path() + "/events";
    writeTrace(folder.path() + "/trace.csv");
    const std::string hour = writeScenario(folder.path(), kHour);
    const std::string day = writeScenario(folder.path(), kDay);
    const Cost ofHour = replay(hour, events);
    Cost ofDay{1e9, 0};
    for (int i = 0; i < kRuns; ++i) {
        const Cost cost = replay(day, events);
        ofDay = cost.seconds < ofDay.seconds ? cost : ofDay;
    }
    const int64_t writes = count(events, "write");
    const double floor = floorSeconds(writes);
    const double growth = static_cast<double>(ofDay.memory) / static_cast<double>(ofHour.memory);
    std::printf(
            "replay of 24 h, 24 zones, a trace row a second, heat monitor on for half: %.2f s of "
            "CPU, %.1f x its file operations (budget %.0f s); %lld writes, %lld heat reports\n"
            "memory: an hour %ld KiB, the day %ld KiB, %.3f x (budget %.2f)\n",
            ofDay.seconds, ofDay.seconds / floor, kBudgetSeconds, static_cast<long long>(writes),
            static_cast<long long>(count(events, "notify_component_heat")), ofHour.memory,
            ofDay.memory, growth, kMemoryBudget);
    const bool ran = ofHour.seconds > 0 && ofDay.seconds > 0 && writes > 0;
    return ran && ofDay.seconds <= kBudgetSeconds && growth <= kMemoryBudget ? 0 : 1;
}
