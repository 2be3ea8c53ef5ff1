#include "HubDriverBuffer.h"

#include <cstdlib>

namespace android {

namespace {

constexpr uint64_t kMagic = 0x6875622d62756666;  // "hub-buff"

/** Stands before the data, so that an address is enough to find it. */
struct Head {
    uint64_t magic;
    uint64_t bufferId;
};

}  // namespace

uint8_t* newHubBuffer(uint64_t bufferId, size_t size) {
    // One byte more, so that the address of empty data is not the next block's.
    auto* head = static_cast<Head*>(malloc(sizeof(Head) + size + 1));
    if (head == nullptr) {
        return nullptr;
    }
    *head = {kMagic, bufferId};
    return reinterpret_cast<uint8_t*>(head + 1);
}

bool freeHubBuffer(binder_uintptr_t address, uint64_t* bufferId) {
    if (address == 0 || address % alignof(Head) != 0) {
        return false;
    }
    // The driver's format holds pointers as numbers.
    auto* head = reinterpret_cast<Head*>(  // NOLINT(performance-no-int-to-ptr)
            static_cast<uintptr_t>(address) - sizeof(Head));
    if (head->magic != kMagic) {
        return false;
    }
    *bufferId = head->bufferId;
    head->magic = 0;
    free(head);
    return true;
}

}  // namespace android
