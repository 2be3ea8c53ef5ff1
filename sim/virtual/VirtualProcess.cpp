// The process id of a simulated phone, the same on every run.

#include "base/ProcessId.h"

namespace kelvo {

pid_t processIdForSeed() {
    return 1;
}

}  // namespace kelvo
