#pragma once

#include <HubClient.h>
#include <utils/Mutex.h>

#include <memory>
#include <string>

#include "BinderDriver.h"
#include "HubDriverChannel.h"

namespace android {

/**
 * The driver that binderhub is. Each thread gets a connection of its own at its first exchange and
 * keeps it until exitThread(). Once the hub is gone everything fails with -EBADF. Destroyed only
 * when no other thread uses it any more and they have called exitThread().
 *
 * A thread that polls its descriptor is to call pollDescriptor() again before each poll, and makes
 * no two-way call between that and reading what came.
 */
class HubDriver : public BinderDriver {
  public:
    HubDriver(std::string name, std::unique_ptr<binderhub::HubClient> process);
    ~HubDriver() override;

    status_t writeRead(binder_write_read* exchange, bool readsNext) override;
    status_t setMaxThreads(uint32_t count) override;
    status_t becomeContextManager(const flat_binder_object& object) override;
    ssize_t strongReferences(uint32_t handle) override;
    void exitThread() override;
    int pollDescriptor() override;
    std::string name() const override { return mName; }

  private:
    /** What `answer` points at holds while the lock does. */
    status_t askLocked(binderhub::Kind kind, uint32_t value, std::span<const uint8_t> payload,
                       binderhub::InMessage* answer) REQUIRES(mAskLock);
    status_t channel(HubDriverChannel** channel);
    status_t openChannel(HubDriverChannel** channel);

    const std::string mName;
    const std::unique_ptr<binderhub::HubClient> mProcess;
    Mutex mAskLock;  // one question at a time; no other lock is taken under it
};

}  // namespace android
