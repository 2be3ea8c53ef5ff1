#include "shelltemp/TsensorHistogram.h"

#include <algorithm>

namespace kelvo {

namespace {

constexpr int32_t kHighTemp = 50000;      // m°C, an episode begins here
constexpr int32_t kBandWidth = 10000;     // m°C
constexpr int32_t kTopBandTemp = 100001;  // m°C, from here on everything is in the last band
constexpr int32_t kTopBand = kTsensorBands - 1;

void countAt(std::vector<int32_t>& bands, int32_t index) {
    ++bands[static_cast<size_t>(std::clamp(index, 0, kTopBand))];
}

}  // namespace

std::optional<TsensorEpisodeEnd> countTsensorSample(int32_t temp, TsensorState& state,
                                                    std::vector<int32_t>& counts,
                                                    std::vector<int32_t>& times) {
    if (temp >= kHighTemp) {
        state.overHigh = true;
    }
    const int32_t peak = state.maxTemp;  // without this sample
    state.maxTemp = std::max(state.maxTemp, temp);
    if (temp >= kTopBandTemp) {
        // A sample this hot counts as an episode of its own, whatever comes next.
        countAt(counts, kTopBand);
        countAt(times, kTopBand);
        return std::nullopt;
    }
    if (temp > kHighTemp) {
        countAt(times, (temp - kHighTemp) / kBandWidth + 1);
        return std::nullopt;
    }
    if (state.overHigh) {
        state = {};
        const TsensorEpisodeEnd end{1 - (kHighTemp - temp) / kBandWidth,
                                    (peak - kHighTemp) / kBandWidth + 1};
        countAt(counts, end.countsIndex);
        countAt(times, end.timesIndex);
        return end;
    }
    countAt(times, 0);
    return std::nullopt;
}

}  // namespace kelvo
