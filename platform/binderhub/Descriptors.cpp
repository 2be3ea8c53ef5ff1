#include "Descriptors.h"

#include <fcntl.h>
#include <sys/resource.h>

#include "Limits.h"

using android::base::unique_fd;

namespace binderhub {

namespace {

rlim_t softLimit() {
    rlimit limit = {};
    return getrlimit(RLIMIT_NOFILE, &limit) == 0 ? limit.rlim_cur : 0;
}

rlim_t& knownLimit() {
    static rlim_t limit = softLimit();
    return limit;
}

}  // namespace

void raiseDescriptorLimit() {
    rlimit limit = {};
    if (getrlimit(RLIMIT_NOFILE, &limit) == 0) {
        limit.rlim_cur = limit.rlim_max;
        setrlimit(RLIMIT_NOFILE, &limit);
    }
    knownLimit() = softLimit();
}

bool isAffordable(int descriptor) {
    // The lowest free number is taken each time, so the number tells how many are in use.
    return descriptor >= 0 && static_cast<rlim_t>(descriptor) + kReservedDescriptors < knownLimit();
}

unique_fd duplicate(int descriptor) {
    unique_fd copy(fcntl(descriptor, F_DUPFD_CLOEXEC, 0));
    if (!isAffordable(copy.get())) {
        copy.reset();
    }
    return copy;
}

}  // namespace binderhub
