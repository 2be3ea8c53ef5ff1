#pragma once

#include <functional>
#include <string>

#include "sim/tree/DeviceTree.h"

namespace sim {

/** Notices the system properties that the daemon sets. Not thread-safe. */
class PropertyWatch {
  public:
    using Take = std::function<void(const std::string& name, const std::string& value)>;

    /** Watches from now on. Throws std::system_error. */
    explicit PropertyWatch(const DeviceTree& tree);
    ~PropertyWatch();
    PropertyWatch(const PropertyWatch&) = delete;
    PropertyWatch& operator=(const PropertyWatch&) = delete;

    /** Readable when there is something to take. */
    int fd() const { return mFd; }
    /** Hands over each property set since the last call, in order. Never waits. */
    void takeChanges(const Take& take);
    /** Forgets what was set since the last call: it was not the daemon. */
    void dropChanges();

  private:
    const DeviceTree& mTree;
    int mFd = -1;
};

}  // namespace sim
