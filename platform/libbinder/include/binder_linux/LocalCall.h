#pragma once

#include <sys/types.h>

#include <cstdint>

namespace android {

/**
 * Makes binder calls of the present thread come from another caller while it lives, as the driver
 * does for calls from other processes: `getCallingUid` and `getCallingPid` give that caller, and
 * work source and strict-mode policy begin unset. What held before is restored at the end.
 *
 *     LocalCall call(kSystemUid, clientPid);
 *     service->transact(code, data, &reply);
 *
 * A call that the service makes in turn still has this caller, unless the service clears its
 * calling identity. Scopes may be nested; one belongs to the thread that made it.
 */
class LocalCall {
  public:
    LocalCall(uid_t uid, pid_t pid);
    ~LocalCall();
    LocalCall(const LocalCall&) = delete;
    LocalCall& operator=(const LocalCall&) = delete;

  private:
    const int64_t mIdentity;
    const int64_t mWorkSource;
    const int32_t mStrictModePolicy;
};

}  // namespace android
