#include "LabCourse.h"

#include <algorithm>
#include <cmath>

namespace {

// A gap is longer than this many of the usual distances of readings, and than so many seconds.
constexpr double kGapDistances = 5;
constexpr double kLeastGap = 10;  // s

/** The median of the distances between readings. */
double usualDistance(const std::vector<double>& times) {
    std::vector<double> distances;
    for (size_t i = 1; i < times.size(); ++i) {
        distances.push_back(times[i] - times[i - 1]);
    }
    const auto middle = distances.begin() + static_cast<ptrdiff_t>(distances.size() / 2);
    std::ranges::nth_element(distances, middle);
    return distances.empty() ? 0 : *middle;
}

}  // namespace

LabCourse::LabCourse(const LabRecord& record, const LabColumn& column, double shift)
      : mMostGap(std::max(kLeastGap, kGapDistances * usualDistance(record.times))) {
    for (size_t i = 0; i < record.times.size(); ++i) {
        if (const auto& temp = column.temps[i]) {
            mCourse.times.push_back(record.times[i] + shift);
            mCourse.values.push_back(*temp);
        }
    }
}

std::optional<int32_t> LabCourse::at(double seconds) const {
    const auto& times = mCourse.times;
    const auto after = std::ranges::lower_bound(times, seconds);
    if (after == times.end() || (after == times.begin() && *after > seconds)) {
        return std::nullopt;
    }
    const auto i = static_cast<size_t>(after - times.begin());
    double temp = mCourse.values[i];
    if (*after > seconds) {
        const double gap = times[i] - times[i - 1];
        if (gap > mMostGap) {
            return std::nullopt;
        }
        temp = std::lerp(mCourse.values[i - 1], temp, (seconds - times[i - 1]) / gap);
    }
    return static_cast<int32_t>(std::lround(temp * 1000));
}
