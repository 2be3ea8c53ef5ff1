// A small call from another process, against the floor of a hub: two processes that play ping-pong
// through one relay. Then how many calls a second there are with several callers.

#include <poll.h>
#include <stdlib.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "BinderPeer.h"
#include "ForkedProcess.h"
#include "RelayFloor.h"
#include "RoundTrips.h"
#include "sim/tree/TemporaryFolder.h"

namespace {

using Clock = std::chrono::steady_clock;

constexpr double kBudget = 2.0;
constexpr int kStartLimitMs = 10000;
constexpr std::chrono::seconds kThroughputTime(2);

/** 0 when both figures keep the budget. */
int measureRoundTrips(const bench::RelayFloor& relay, const std::string& where) {
    const bench::BinderCaller caller;
    return bench::keepsBudget({"small call, " + where, "relay", kBudget,
                               [&] { return caller.roundTrip(); },
                               [&] { return relay.roundTrip(); }})
                   ? 0
                   : 1;
}

/** Calls until the time is over; how many go to the pipe. */
int callForAWhile(int out) {
    const bench::BinderCaller caller;
    const Clock::time_point end = Clock::now() + kThroughputTime;
    int64_t count = 0;
    while (Clock::now() < end && caller.roundTrip()) {
        ++count;
    }
    return write(out, &count, sizeof(count)) == sizeof(count) ? 0 : 1;
}

bool measureThroughput(int callers) {
    std::array<int, 2> ends{};
    if (pipe(ends.data()) != 0) {
        return false;
    }
    std::vector<std::unique_ptr<bench::ForkedProcess>> processes;
    for (int i = 0; i < callers; ++i) {
        processes.push_back(
                std::make_unique<bench::ForkedProcess>([&] { return callForAWhile(ends[1]); }));
    }
    int64_t sum = 0;
    bool good = true;
    for (const auto& process : processes) {
        int64_t count = 0;
        good = process->wait() == 0 && read(ends[0], &count, sizeof(count)) == sizeof(count) &&
               count > 0 && good;
        sum += count;
    }
    close(ends[0]);
    close(ends[1]);
    std::printf("%2d callers: %lld calls/s\n", callers,
                static_cast<long long>(sum / kThroughputTime.count()));
    return good;
}

int execHub() {
    const std::string path =
            std::filesystem::read_symlink("/proc/self/exe").parent_path() / "binderhub";
    execl(path.c_str(), path.c_str(), static_cast<char*>(nullptr));
    std::perror(path.c_str());
    return 127;
}

/** Whether a socket comes to be there. */
bool waitForSocket(const std::string& path) {
    const Clock::time_point limit = Clock::now() + std::chrono::milliseconds(kStartLimitMs);
    struct stat status {};
    while (stat(path.c_str(), &status) != 0) {
        if (Clock::now() > limit) {
            return false;
        }
        poll(nullptr, 0, 1);
    }
    return true;
}

/** Starts the server and waits until it serves; null when it does not. */
std::unique_ptr<bench::ForkedProcess> startServer() {
    std::array<int, 2> ready{};
    if (pipe(ready.data()) != 0) {
        return nullptr;
    }
    auto server = std::make_unique<bench::ForkedProcess>([&] {
        close(ready[0]);
        return bench::serveCalls(ready[1]);
    });
    close(ready[1]);
    pollfd fd{ready[0], POLLIN, 0};
    const bool serves = poll(&fd, 1, kStartLimitMs) == 1;
    close(ready[0]);
    return serves ? std::move(server) : nullptr;
}

/** Starts hub and server, then measures in a process of its own; 0 when that returns 0. */
int withServer(const std::function<int()>& measure) {
    const sim::TemporaryFolder root("kelvo-bench-");
    setenv("KELVO_ROOT", root.path().c_str(), 1);
    std::unique_ptr<bench::ForkedProcess> hub;
    if (!bench::onKernelDriver()) {
        setenv("KELVO_BINDER", "hub", 1);
        std::filesystem::create_directories(root.path() + "/dev");
        hub = std::make_unique<bench::ForkedProcess>(execHub);
        if (!waitForSocket(root.path() + "/dev/binderhub")) {
            std::fprintf(stderr, "binder_bench: the hub does not start\n");
            return 1;
        }
    }
    const std::unique_ptr<bench::ForkedProcess> server = startServer();
    if (server == nullptr) {
        std::fprintf(stderr, "binder_bench: the server does not start\n");
        return 1;
    }
    return measure();
}

int measureRoundTripsOn(const char* where) {
    return withServer([where] {
        const bench::RelayFloor relay;
        return bench::ForkedProcess([&] { return measureRoundTrips(relay, where); }).wait();
    });
}

}  // namespace

int main() {
    std::printf("driver: %s\n", bench::onKernelDriver() ? "kernel" : "hub");
    // Which processors the scheduler gives three processes in turn would decide the comparison:
    // only the figures of a single one are held to the budget.
    const int status = bench::ForkedProcess([] {
                           bench::useOneProcessor();
                           return measureRoundTripsOn("one processor");
                       }).wait();
    measureRoundTripsOn("any processor");
    const int throughput = withServer([] {
        bool good = true;
        for (const int callers : {1, 4, 16}) {
            good = measureThroughput(callers) && good;
        }
        return good ? 0 : 1;
    });
    return status == 0 && throughput == 0 ? 0 : 1;
}
