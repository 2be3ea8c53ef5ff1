#pragma once

#include <algorithm>
#include <cstdint>
#include <utility>
#include <vector>

namespace kelvo {

/**
 * Zone index → temperature (m°C) of one fitting cycle, in one piece of memory that serves cycle
 * after cycle: at the loop's pace every scattered node would be a miss in the caches. Iterates in
 * the order in which the zones were read. Not thread-safe.
 */
class ZoneTemps {
  public:
    using Entry = std::pair<int32_t, int32_t>;

    ZoneTemps() = default;
    ZoneTemps(std::initializer_list<Entry> entries) : mEntries(entries) {}

    /** The temperature of a zone read in this cycle, else null. */
    const int32_t* find(int32_t index) const {
        const auto found = std::ranges::find(mEntries, index, &Entry::first);
        return found == mEntries.end() ? nullptr : &found->second;
    }
    /** Adds a zone that find() does not know. */
    void add(int32_t index, int32_t temp) { mEntries.emplace_back(index, temp); }
    /** Begins a new cycle. */
    void clear() { mEntries.clear(); }

    auto begin() const { return mEntries.begin(); }
    auto end() const { return mEntries.end(); }

  private:
    std::vector<Entry> mEntries;
};

}  // namespace kelvo
