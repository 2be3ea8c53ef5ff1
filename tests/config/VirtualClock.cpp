#include "VirtualClock.h"

nsecs_t systemTime(int) {
    return gVirtualTime;
}
