#pragma once

#include <sys/types.h>
#include <utils/Errors.h>

#include <cstdint>
#include <memory>
#include <string>

#include "BinderProtocol.h"

namespace android {

/**
 * The binder driver as the rest of libbinder sees it: the commands of linux/android/binder.h,
 * whoever carries them out. What belongs to one thread (its place in the driver) the driver finds
 * by the calling thread. Thread-safe. Statuses are OK or a negative errno.
 */
class BinderDriver {
  public:
    virtual ~BinderDriver() = default;

    /**
     * BINDER_WRITE_READ: hands over the BC_ commands from `write_consumed` to `write_size`, then,
     * unless `read_size` is 0, blocks until the driver has returns for this thread and puts them at
     * `read_buffer`; both `consumed` fields advance. `read_size` is at least kReadBytes or 0. Data
     * of a received transaction stays valid until BC_FREE_BUFFER is given its address.
     *
     * `readsNext` is a promise that this thread's next exchange reads, and that no code of anyone
     * else runs before it: a driver may then count the thread as waiting already. Fails with -EINTR
     * when a signal came in, -EBADF when the driver is closed or gone.
     */
    virtual status_t writeRead(binder_write_read* exchange, bool readsNext = false) = 0;

    /** How many threads the driver may ask for (BR_SPAWN_LOOPER) beside those that joined. */
    virtual status_t setMaxThreads(uint32_t count) = 0;

    /** Makes `object` the binder behind handle 0; -EBUSY while another process holds that place. */
    virtual status_t becomeContextManager(const flat_binder_object& object) = 0;

    /**
     * Strong references to the binder behind a handle: one for each process that has any, and those
     * of calls to it. For the context manager only; negative when it cannot be told.
     */
    virtual ssize_t strongReferences(uint32_t handle) = 0;

    /** The calling thread uses the driver no more; what it had asked for is undone. */
    virtual void exitThread() = 0;

    /** A descriptor that is readable while the calling thread has returns to read. */
    virtual int pollDescriptor() = 0;

    /** What a person knows it by: "/dev/binder", or the path of the hub's socket. */
    virtual std::string name() const = 0;

    /** Room for one exchange's returns: a transaction and what may come with it. */
    static constexpr size_t kReadBytes = 256;
};

/** The kernel's driver; null, and why in `error`, when it cannot be had. */
std::unique_ptr<BinderDriver> openKernelDriver(const std::string& device, std::string* error);

/** A hub behind its socket; null, and why in `error`, when none answers there. */
std::unique_ptr<BinderDriver> openHubDriver(const std::string& socket, std::string* error);

}  // namespace android
