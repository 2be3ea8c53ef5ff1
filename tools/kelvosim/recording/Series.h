#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

/**
 * A figure over the time of a run. Each point stands until the next one; only changes are kept, so
 * a figure that stands still costs nothing.
 */
class Series {
  public:
    struct Point {
        int64_t timeMs;                // since t = 0
        std::optional<int32_t> value;  // none: there is no figure from here on
    };

    /** `unit` is what its values are shown in: "m°C", "mW", … */
    Series(std::string name, std::string unit) : mName(std::move(name)), mUnit(std::move(unit)) {}

    const std::string& name() const { return mName; }
    const std::string& unit() const { return mUnit; }
    /** Ascending by time, one a time. */
    const std::vector<Point>& points() const { return mPoints; }

    /** Times never go back; of several values at one time the last one stays. */
    void add(int64_t timeMs, std::optional<int32_t> value);
    /** What stands at a time; none before the first point. */
    std::optional<int32_t> at(int64_t timeMs) const;
    /** At most `most` of the points, two at least: the extremes of equal stretches of them. */
    Series thinned(size_t most) const;

  private:
    std::string mName;
    std::string mUnit;
    std::vector<Point> mPoints;
};

/** A state over the time of a run, as a text; empty where there is none. */
class Band {
  public:
    struct Change {
        int64_t timeMs;
        std::string text;
    };

    explicit Band(std::string name) : mName(std::move(name)) {}

    const std::string& name() const { return mName; }
    const std::vector<Change>& changes() const { return mChanges; }

    /** As Series::add and Series::at. */
    void add(int64_t timeMs, std::string_view text);
    std::string at(int64_t timeMs) const;

  private:
    std::string mName;
    std::vector<Change> mChanges;
};
