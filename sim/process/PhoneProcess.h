#pragma once

#include <sys/types.h>

#include <optional>
#include <string>
#include <vector>

namespace sim {

/**
 * A process of the phone: a program below a device root. It ends with this object, and also when
 * the process that started it is killed. Not thread-safe.
 */
class PhoneProcess {
  public:
    /**
     * Starts `command` (program and arguments). What it writes goes to the file `log`, but its
     * standard output to the descriptor `output` unless that is -1; it reads from `input`, else
     * what this process would read. Throws std::system_error; a program that cannot be run ends
     * with status 127.
     */
    PhoneProcess(const std::vector<std::string>& command, const std::string& root,
                 const std::string& log, int output = -1, int input = -1);
    /** Ends it, and what it has started unless that left its process group. */
    ~PhoneProcess();
    PhoneProcess(const PhoneProcess&) = delete;
    PhoneProcess& operator=(const PhoneProcess&) = delete;

    pid_t pid() const { return mPid; }
    /** How it ended ("status 127", "signal 11"); none while it runs. */
    std::optional<std::string> ending() const;

  private:
    pid_t mPid = -1;
};

}  // namespace sim
