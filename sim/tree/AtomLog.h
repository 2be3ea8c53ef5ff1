#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

#include "sim/tree/DeviceTree.h"

namespace sim {

/** The records that the statistics library of a simulated phone is given. Not thread-safe. */
class AtomLog {
  public:
    /** Creates the library's file. Throws std::system_error. */
    explicit AtomLog(DeviceTree& tree);
    ~AtomLog();
    AtomLog(const AtomLog&) = delete;
    AtomLog& operator=(const AtomLog&) = delete;

    /** Readable when there may be something to take. */
    int fd() const { return mWatch; }
    using Take = std::function<void(int32_t id, const std::string& text, int32_t value)>;
    /** Hands over each record since the last call. Never waits. */
    void takeRecords(const Take& take);

  private:
    int mFd = -1;
    int mWatch = -1;       // inotify: a file itself is always readable
    std::string mPending;  // begin of a line that is not complete
};

}  // namespace sim
