#pragma once

#include <android-base/unique_fd.h>

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "sim/process/PhoneProcess.h"

namespace sim {

/** One framework process, and the lines between it and the simulator. Not thread-safe. */
class FrameworkActor {
  public:
    /** Throws std::system_error. */
    FrameworkActor(const std::vector<std::string>& command, const std::string& root,
                   const std::string& log);

    /** Tells it to perform the scenario's action with this index. */
    void start(size_t action);
    /** Hands over the lines that have come; true when one said that the action is done. */
    bool takeLines(const std::function<void(const std::string& event)>& onEvent);
    /** Readable when lines have come, or when the process has ended. */
    int fd() const { return mLink.get(); }
    std::optional<std::string> ending() { return mProcess->ending(); }
    const std::string& log() const { return mLog; }

  private:
    const std::string mLog;
    android::base::unique_fd mLink;
    std::optional<PhoneProcess> mProcess;
    std::string mPending;  // begin of a line that is not complete
};

}  // namespace sim
