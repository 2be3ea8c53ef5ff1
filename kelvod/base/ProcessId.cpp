#include "base/ProcessId.h"

#include <unistd.h>

namespace kelvo {

pid_t processIdForSeed() {
    return getpid();
}

}  // namespace kelvo
