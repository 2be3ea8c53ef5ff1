// What the daemon holds after many days. "soak replay EXAMPLE DAYS" runs the engines in virtual
// time and fails when anything grows after the first day; "soak scenario EXAMPLE DAYS" prints the
// scenario, for kelvosim live.

#include <json/writer.h>
#include <malloc.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <iterator>
#include <map>
#include <string>

#include "SoakScenario.h"
#include "sim/process/RootedRun.h"
#include "sim/scenario/ScenarioParser.h"
#include "sim/virtual/VirtualPhone.h"

namespace {

constexpr int64_t kDayMs = 86'400'000;
// A reload appends to the table of zones, which every reader expects: its texts, for 15 zones, in
// a vector that doubles.
constexpr int64_t kGrowthOfReload = 1024;  // bytes
// A day ends with more or less of its own data in maps.
constexpr int64_t kBytesDiffer = 24576;
constexpr int64_t kBlocksDiffer = 64;

// Blocks that are allocated, by their size: an entry of a map is a block, so no map grows unseen.
// There is one thread.
constexpr size_t kBlockStep = 16;  // bytes, as the allocator rounds
constexpr size_t kBlockSizes = 40;
int64_t sBlocks[kBlockSizes];

int64_t& blocksLike(void* block) {
    return sBlocks[std::min(malloc_usable_size(block) / kBlockStep, kBlockSizes - 1)];
}

/** What the process holds at the end of a day, and how often each event came on it. */
using Figures = std::map<std::string, int64_t>;

void takeStock(Figures& figures) {
    const struct mallinfo2 memory = mallinfo2();
    figures["bytes"] = static_cast<int64_t>(memory.uordblks + memory.hblkhd);
    for (const auto& [name, folder] : {std::pair("files", "fd"), std::pair("threads", "task")}) {
        const std::filesystem::directory_iterator entries(std::string("/proc/self/") + folder);
        figures[name] = std::distance(entries, {});
    }
    for (size_t i = 0; i < kBlockSizes; ++i) {
        figures["blocks of " + std::to_string(i * kBlockStep)] = sBlocks[i];
    }
}

/** Whether the daemon has grown since the first day, or does less than it did. */
bool isWorn(const Figures& first, Figures today, int daysSince) {
    bool worn = false;
    for (const auto& [name, value] : first) {
        const bool isEvent = name.starts_with("event");
        const int64_t lowest = isEvent ? value * 4 / 5 : 0;
        int64_t highest = isEvent ? value * 2 : value;
        if (name == "bytes") {
            highest += daysSince * kReloadsADay * kGrowthOfReload + kBytesDiffer;
        } else if (name.starts_with("blocks")) {
            highest += kBlocksDiffer;
        }
        const bool isGood = lowest <= today[name] && today[name] <= highest;
        std::cout << (isGood ? "    " : "FAILED: ") << name << ": " << today[name] << " of "
                  << lowest << " to " << highest << std::endl;
        worn |= !isGood;
    }
    return worn;
}

int replay(const sim::Scenario& scenario, int days) {
    Figures first;
    Figures today;
    sim::VirtualPhone phone(scenario);
    phone.setListener([&](const sim::Event& event) { ++today["event " + event.name]; });
    bool worn = false;
    const bool started = phone.start();
    for (int day = 1; started && day <= days; ++day) {
        today.clear();
        // Not quite to its end: what the next day begins with belongs to that one.
        phone.runUntil(day * kDayMs - 1);
        takeStock(today);
        first = day == 1 ? today : first;
        std::cout << "day " << day << std::endl;
        worn |= isWorn(first, today, day - 1);
    }
    return started && !worn ? EXIT_SUCCESS : EXIT_FAILURE;
}

}  // namespace

void* operator new(size_t size) {
    void* const block = std::malloc(size);
    if (block == nullptr) {
        std::abort();
    }
    ++blocksLike(block);
    return block;
}

void operator delete(void* block) noexcept {
    if (block != nullptr) {
        --blocksLike(block);
        std::free(block);
    }
}

void operator delete(void* block, size_t) noexcept {
    operator delete(block);
}

int main(int argc, char** argv) {
    const std::string command = argc == 4 ? argv[1] : "";
    const int days = argc == 4 ? std::atoi(argv[3]) : 0;
    if (!(command == "replay" && days > 1) && !(command == "scenario" && days > 0)) {
        std::cerr << "usage: soak replay|scenario EXAMPLE DAYS\n";
        return 2;
    }
    try {
        if (command == "replay" && !sim::runsBelowOwnRoot()) {
            // A thread's cache counts what has been freed as allocated.
            setenv("GLIBC_TUNABLES", "glibc.malloc.tcache_count=0", 1);
            return sim::runBelowOwnRoot(argv, [](sim::DeviceTree& tree) {
                tree.setProperty("persist.sys.kelvo.loglevel", "-1");
            });
        }
        const std::string scenario =
                Json::writeString(Json::StreamWriterBuilder(), soakScenario(argv[2], days));
        if (command == "replay") {
            return replay(sim::parseScenario(scenario, "soak.json", "/"), days);
        }
        std::cout << scenario << std::endl;
    } catch (const std::exception& error) {
        std::cerr << "soak: " << error.what() << '\n';
        return EXIT_FAILURE;
    }
}
