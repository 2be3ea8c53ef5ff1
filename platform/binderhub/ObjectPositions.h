#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

namespace binderhub {

/** What a binder, a handle or a descriptor takes among the data of a transaction (bytes). */
constexpr size_t kObjectBytes = 24;

/**
 * Walks over the places that a list of offsets (binder_size_t each) names in data of this size: in
 * order, apart, aligned and inside. The same code on the hub's side and on the process's.
 */
class ObjectPositions {
  public:
    ObjectPositions(size_t dataSize, std::span<const uint8_t> offsets)
          : mDataSize(dataSize), mOffsets(offsets) {}

    bool atEnd() const { return mOffsets.empty(); }

    /** The next one; false when no object can stand there. */
    bool next(size_t* position);

  private:
    const size_t mDataSize;
    std::span<const uint8_t> mOffsets;
    size_t mFirstFree = 0;
};

}  // namespace binderhub
