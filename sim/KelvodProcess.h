#pragma once

#include <sys/types.h>

#include <optional>
#include <string>
#include <vector>

namespace sim {

/**
 * The daemon as a process of its own below a device root. It ends with this object, and also when
 * the process that started it is killed. Not thread-safe.
 */
class KelvodProcess {
  public:
    /**
     * Starts `command` (program and arguments); its log goes to the file `log`. Throws
     * std::system_error; a program that cannot be run ends with status 127.
     */
    KelvodProcess(const std::vector<std::string>& command, const std::string& root,
                  const std::string& log);
    ~KelvodProcess();
    KelvodProcess(const KelvodProcess&) = delete;
    KelvodProcess& operator=(const KelvodProcess&) = delete;

    pid_t pid() const { return mPid; }
    /** How it ended ("status 127", "signal 11"); none while it runs. */
    std::optional<std::string> ending();

  private:
    pid_t mPid = -1;
    std::optional<std::string> mEnding;
};

}  // namespace sim
