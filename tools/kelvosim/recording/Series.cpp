#include "recording/Series.h"

#include <algorithm>

namespace {

/** Puts a change behind the others of an ascending list without repeating what holds already. */
template <typename Entry, typename Value>
void append(std::vector<Entry>& list, int64_t timeMs, Value Entry::*member, Value value,
            const Value& before) {
    if (!list.empty() && list.back().timeMs == timeMs) {
        list.pop_back();
    }
    if (list.empty() ? !(value == before) : !(list.back().*member == value)) {
        list.push_back({timeMs, std::move(value)});
    }
}

/** The latest entry of a time or before it; null when there is none. */
template <typename Entry>
const Entry* latest(const std::vector<Entry>& list, int64_t timeMs) {
    const auto next = std::ranges::upper_bound(list, timeMs, {}, &Entry::timeMs);
    return next == list.begin() ? nullptr : &*std::prev(next);
}

}  // namespace

void Series::add(int64_t timeMs, std::optional<int32_t> value) {
    append(mPoints, timeMs, &Point::value, value, std::optional<int32_t>{});
}

std::optional<int32_t> Series::at(int64_t timeMs) const {
    const Point* const point = latest(mPoints, timeMs);
    return point != nullptr ? point->value : std::nullopt;
}

Series Series::thinned(size_t most) const {
    if (mPoints.size() <= most) {
        return *this;
    }
    Series result(mName, mUnit);
    const size_t stretches = most / 2;
    const auto isLower = [](const Point& a, const Point& b) { return a.value < b.value; };
    for (size_t i = 0; i < stretches; ++i) {
        const auto at = [&](size_t stretch) {
            return mPoints.begin() + static_cast<ptrdiff_t>(mPoints.size() * stretch / stretches);
        };
        auto [first, second] = std::minmax_element(at(i), at(i + 1), isLower);
        if (second < first) {
            std::swap(first, second);
        }
        result.add(first->timeMs, first->value);
        result.add(second->timeMs, second->value);
    }
    return result;
}

void Band::add(int64_t timeMs, std::string_view text) {
    append(mChanges, timeMs, &Change::text, std::string(text), std::string());
}

std::string Band::at(int64_t timeMs) const {
    const Change* const change = latest(mChanges, timeMs);
    return change != nullptr ? change->text : std::string();
}
