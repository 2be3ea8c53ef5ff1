#pragma once

#include <json/value.h>

#include <array>
#include <cstdint>
#include <limits>
#include <string>

namespace kelvo {

/** Range of one temperature and how often it stood in which whole degree. Not thread-safe. */
class TempHistogram {
  public:
    static constexpr int32_t kCounters = 21;

    /** Counter i takes `base` + i °C; the first also what is colder, the last what is hotter. */
    explicit TempHistogram(int32_t base) : mBase(base) {}
    /** Takes a temperature in m°C. */
    void add(int32_t temp);
    /** The counters as members: `prefix` and the degrees. */
    void write(Json::Value& out, const std::string& prefix) const;
    int32_t min() const { return mMin; }
    int32_t max() const { return mMax; }

  private:
    int32_t mBase;  // °C
    int32_t mMin = std::numeric_limits<int32_t>::max();
    int32_t mMax = 0;
    std::array<int32_t, kCounters> mCounts{};
};

/** Statistics of one local day. Not thread-safe. */
struct DailyTempRecord {
    std::string day;         // "YYYYMMDD", local
    std::string time;        // time stamp of the record's start
    int32_t startTime = 0;   // monotonic, s
    int32_t lastSample = 0;  // monotonic, s
    TempHistogram shell{35};
    TempHistogram board{40};

    /** The record as clients and the big data know it, but for what is not its own. */
    void write(Json::Value& out) const;
};

}  // namespace kelvo
