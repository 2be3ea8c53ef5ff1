#include "service/PrivilegedCaller.h"

#include <binder/IPCThreadState.h>

namespace kelvo {

namespace {

constexpr uid_t kRootUid = 0;
constexpr uid_t kSystemUid = 1000;

}  // namespace

bool isPrivilegedCaller() {
    const uid_t uid = android::IPCThreadState::self()->getCallingUid();
    return uid == kRootUid || uid == kSystemUid;
}

}  // namespace kelvo
