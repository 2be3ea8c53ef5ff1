#include "RoundTrips.h"

#include <sched.h>

#include <algorithm>
#include <cstdio>

namespace bench {

namespace {

using Clock = std::chrono::steady_clock;

constexpr int kBlocks = 200;
constexpr int kRoundsInBlock = 100;
constexpr int kWarmUpBlocks = 5;

bool isWithin(const Comparison& comparison, const char* figure, double measured, double floor) {
    std::printf("%s, %s: %.1f us, %s %.1f us: %.2f x (budget %.1f)\n", comparison.name.c_str(),
                figure, measured, comparison.floorName.c_str(), floor, measured / floor,
                comparison.budget);
    return measured <= comparison.budget * floor;
}

}  // namespace

bool Samples::addBlock(const RoundTrip& roundTrip, int count) {
    for (int i = 0; i < count; ++i) {
        const Clock::time_point start = Clock::now();
        if (!roundTrip()) {
            return false;
        }
        mMicros.push_back(std::chrono::duration<double, std::micro>(Clock::now() - start).count());
    }
    return true;
}

double Samples::percentile(size_t percent) {
    std::ranges::sort(mMicros);
    return mMicros[mMicros.size() * percent / 100];
}

bool keepsBudget(const Comparison& comparison) {
    Samples measured;
    Samples floor;
    for (int block = -kWarmUpBlocks; block < kBlocks; ++block) {
        if (block == 0) {
            measured.clear();
            floor.clear();
        }
        if (!floor.addBlock(comparison.floor, kRoundsInBlock) ||
            !measured.addBlock(comparison.measured, kRoundsInBlock)) {
            std::fprintf(stderr, "%s: a round trip failed\n", comparison.name.c_str());
            return false;
        }
    }
    const bool median =
            isWithin(comparison, "median", measured.percentile(50), floor.percentile(50));
    const bool tail = isWithin(comparison, "95 %", measured.percentile(95), floor.percentile(95));
    return median && tail;
}

void useOneProcessor() {
    cpu_set_t processors;
    CPU_ZERO(&processors);
    CPU_SET(static_cast<size_t>(sched_getcpu()), &processors);
    sched_setaffinity(0, sizeof(processors), &processors);
}

}  // namespace bench
