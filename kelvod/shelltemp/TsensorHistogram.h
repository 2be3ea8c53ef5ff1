#pragma once

#include <cstdint>
#include <optional>
#include <vector>

namespace kelvo {

/** Episode above 50 °C that a tsensor is in. */
struct TsensorState {
    bool overHigh = false;  // such an episode runs
    int32_t maxTemp = 0;    // m°C, highest since the last episode ended
};

inline constexpr size_t kTsensorBands = 6;

/** An episode that a sample has ended: where it was counted. */
struct TsensorEpisodeEnd {
    int32_t timesIndex;
    int32_t countsIndex;
};

/**
 * Counts one sample (m°C). times[0] counts samples at or below 50 °C, times[1..5] samples in bands
 * of ten degrees above (everything from 100.001 °C in the last), counts[k] ended episodes by the
 * band of their peak; both hold kTsensorBands counters. Indexes outside the six bands are clamped
 * to them.
 */
std::optional<TsensorEpisodeEnd> countTsensorSample(int32_t temp, TsensorState& state,
                                                    std::vector<int32_t>& counts,
                                                    std::vector<int32_t>& times);

}  // namespace kelvo
