#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <set>
#include <utility>

#include "heat/TaskStats.h"

namespace kelvo {

inline int64_t powerOf(const PidTidPower& thread) {
    return thread.power;
}
inline int64_t powerOf(int64_t power) {
    return power;
}

/**
 * What is known of threads or processes, by id. Bounded, because nobody may ask for hours while
 * they come and go: in a full table the weakest gives way, of equally weak ones the lowest id.
 * Not thread-safe; the caller serialises.
 */
template <typename Value>
class PowerTable {
  public:
    static constexpr size_t kCapacity = 4096;

    /** In the order of the ids. */
    const std::map<int32_t, Value>& entries() const { return mById; }
    /** Null when there is none. */
    const Value* find(int32_t id) const {
        const auto found = mById.find(id);
        return found != mById.end() ? &found->second : nullptr;
    }
    /** Whether an entry of this power would be no stronger than any of a full table. */
    bool wouldBeWeakest(int64_t power) { return isFull() && power <= byPower().begin()->first; }
    /** Calls `change` with the entry; a newcomer's takes the weakest's place in a full table. */
    template <typename Change>
    void update(int32_t id, Change change) {
        if (isFull() && find(id) == nullptr) {
            mById.erase(byPower().begin()->second);
            mByPower.erase(mByPower.begin());
        }
        Value& value = mById[id];
        if (mByPower.empty()) {
            change(value);
            return;
        }
        mByPower.erase({powerOf(value), id});
        change(value);
        mByPower.emplace(powerOf(value), id);
    }
    void clear() {
        mById.clear();
        mByPower.clear();
    }

  private:
    using ByPower = std::set<std::pair<int64_t, int32_t>>;

    bool isFull() const { return mById.size() >= kCapacity; }
    ByPower& byPower() {
        if (mByPower.empty()) {
            for (const auto& [id, value] : mById) {
                mByPower.emplace(powerOf(value), id);
            }
        }
        return mByPower;
    }

    std::map<int32_t, Value> mById;
    // And id, the weakest first. Most tables never fill: empty until it is first needed.
    ByPower mByPower;
};

}  // namespace kelvo
