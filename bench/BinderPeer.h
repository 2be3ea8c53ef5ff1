#pragma once

#include <binder/IBinder.h>
#include <binder/Parcel.h>

#include <string>

namespace bench {

/** Whether the calls go to the kernel's driver: KELVO_BINDER is "kernel". */
bool onKernelDriver();

/** In a process of its own: serves as the context manager once it has closed `readyFd`. */
int serveCalls(int readyFd);

/** A caller of that server. Used on one thread, in a process that has no server. */
class BinderCaller {
  public:
    /** Finds the server. */
    BinderCaller();

    /** One int there, two ints back; false when that failed. */
    bool roundTrip() const;

  private:
    const android::sp<android::IBinder> mServer;
};

}  // namespace bench
