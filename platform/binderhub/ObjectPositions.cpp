#include "ObjectPositions.h"

#include <linux/android/binder.h>

#include <cstring>

namespace binderhub {

static_assert(kObjectBytes == sizeof(flat_binder_object));
static_assert(kObjectBytes == sizeof(binder_fd_object));

bool ObjectPositions::next(size_t* position) {
    binder_size_t offset = 0;
    if (mOffsets.size() < sizeof(offset)) {
        return false;
    }
    memcpy(&offset, mOffsets.data(), sizeof(offset));
    mOffsets = mOffsets.subspan(sizeof(offset));
    if (offset < mFirstFree || offset % sizeof(uint32_t) != 0 || mDataSize < kObjectBytes ||
        offset > mDataSize - kObjectBytes) {
        return false;
    }
    *position = offset;
    mFirstFree = offset + kObjectBytes;
    return true;
}

}  // namespace binderhub
