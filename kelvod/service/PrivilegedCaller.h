#pragma once

#include <sys/types.h>

namespace kelvo {

/** Root's or the system's. */
bool isPrivilegedUid(uid_t uid);

/** Whether the binder call that the present thread serves comes from root or the system. */
bool isPrivilegedCaller();

}  // namespace kelvo
