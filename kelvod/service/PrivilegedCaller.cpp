#include "service/PrivilegedCaller.h"

#include <binder/IPCThreadState.h>

namespace kelvo {

namespace {

constexpr uid_t kRootUid = 0;
constexpr uid_t kSystemUid = 1000;

}  // namespace

bool isPrivilegedUid(uid_t uid) {
    return uid == kRootUid || uid == kSystemUid;
}

bool isPrivilegedCaller() {
    return isPrivilegedUid(android::IPCThreadState::self()->getCallingUid());
}

}  // namespace kelvo
