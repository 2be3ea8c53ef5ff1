#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "sim/tree/DeviceTree.h"

namespace sim {

/**
 * "/proc/shell-temp" of a simulated phone: a pipe with a name, so that each write of the daemon is
 * seen, as in the kernel, and not only the last one. Not thread-safe.
 */
class ShellTempNode {
  public:
    explicit ShellTempNode(DeviceTree& tree);
    ~ShellTempNode();
    ShellTempNode(const ShellTempNode&) = delete;
    ShellTempNode& operator=(const ShellTempNode&) = delete;

    void setPresent(bool present);
    /** Readable when there is something to take; -1 while the node is absent. */
    int fd() const { return mFd; }
    /** Hands over each line written since the last call, without its newline. Never waits. */
    void takeLines(const std::function<void(std::string_view line)>& take);

  private:
    DeviceTree& mTree;
    int mFd = -1;
    std::string mPending;  // begin of a line that is not complete
};

}  // namespace sim
