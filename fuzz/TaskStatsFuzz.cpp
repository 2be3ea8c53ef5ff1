// Task statistics as the performance service could word them, ranked over two periods.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>
#include <vector>

#include "Target.h"
#include "heat/TaskStats.h"
#include "heat/TopThreads.h"

namespace {

constexpr size_t kTopThreads = 8;

void check(bool holds) {
    if (!holds) {
        std::abort();
    }
}

void rank(kelvo::TopThreads& threads, int32_t now, float coefficient) {
    threads.getTopKeepPowerTid(now, coefficient);
    const std::vector<kelvo::PidTidPower> top = threads.byShare();
    check(top.size() <= kTopThreads);
    check(std::ranges::is_sorted(top, std::ranges::greater{}, &kelvo::PidTidPower::powerToThermal));
    for (const auto& [key, thread] : threads.exceptThreads()) {
        check(key == std::to_string(thread.pid) + "_" + std::to_string(thread.tid));
    }
}

}  // namespace

void fuzzTaskStats(Bytes data) {
    const std::string_view text = textOf(data);
    bool complete = false;
    const auto whole = kelvo::parseTaskStats(text, &complete);
    for (const kelvo::PidTidPower& thread : whole) {
        check(thread.name[0] != '\0' && thread.name[kelvo::kThreadNameSize - 1] == '\0');
    }
    kelvo::TopThreads threads;
    threads.startPeriod(0);
    threads.add(whole);
    rank(threads, 2000, data.size() % 2 == 0 ? 0.28F : -1.0F);
    // A reading that ends anywhere.
    threads.add(kelvo::parseTaskStats(text.substr(0, data.size() / 2), &complete));
    threads.add(whole);
    rank(threads, INT32_MAX, 0.28F);
    rank(threads, INT32_MIN, 0.28F);
}
