#include "ProcessCpu.h"

#include <filesystem>
#include <fstream>

namespace bench {

namespace {

namespace fs = std::filesystem;

fs::directory_iterator threadsOf(pid_t pid) {
    return fs::directory_iterator("/proc/" + std::to_string(pid) + "/task");
}

}  // namespace

int64_t cpuNanos(pid_t pid) {
    int64_t sum = 0;
    for (const auto& thread : threadsOf(pid)) {
        int64_t running = 0;
        std::ifstream(thread.path() / "schedstat") >> running;
        sum += running;
    }
    return sum;
}

std::map<std::string, int64_t> voluntarySwitches(pid_t pid) {
    std::map<std::string, int64_t> switches;
    for (const auto& thread : threadsOf(pid)) {
        std::string name;
        std::ifstream(thread.path() / "comm") >> name;
        std::ifstream status(thread.path() / "status");
        for (std::string key; status >> key;) {
            if (key == "voluntary_ctxt_switches:") {
                int64_t count = 0;
                status >> count;
                switches[name] += count;
            }
        }
    }
    return switches;
}

}  // namespace bench
