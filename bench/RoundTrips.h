#pragma once

#include <chrono>
#include <cstddef>
#include <functional>
#include <string>
#include <vector>

namespace bench {

/** Durations of one kind of round trip, in microseconds. */
class Samples {
  public:
    using RoundTrip = std::function<bool()>;

    /** Times `count` round trips; false as soon as one fails. */
    bool addBlock(const RoundTrip& roundTrip, int count);
    void clear() { mMicros.clear(); }
    /** The duration that `percent` of them stay below. */
    double percentile(size_t percent);

  private:
    std::vector<double> mMicros;
};

/** What is compared: a round trip with the floor that it is held to. */
struct Comparison {
    std::string name;
    std::string floorName;
    double budget = 0;  // how many times the floor's duration
    Samples::RoundTrip measured;
    Samples::RoundTrip floor;
};

/**
 * Times both in turns, so that what the machine does besides hits both, and prints the median and
 * the 95th percentile. True when no round trip failed and both figures keep the budget.
 */
bool keepsBudget(const Comparison& comparison);

/** This process and those that it starts share one processor from now on. */
void useOneProcessor();

}  // namespace bench
