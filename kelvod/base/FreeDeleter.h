#pragma once

#include <stdlib.h>

namespace kelvo {

/** Lets a std::unique_ptr own what a C function has allocated. */
struct FreeDeleter {
    void operator()(void* memory) const { free(memory); }
};

}  // namespace kelvo
