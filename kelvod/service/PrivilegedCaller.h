#pragma once

namespace kelvo {

/** Whether the binder call that the present thread serves comes from root or the system. */
bool isPrivilegedCaller();

}  // namespace kelvo
