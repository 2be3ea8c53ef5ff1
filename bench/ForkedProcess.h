#pragma once

#include <sys/types.h>

#include <functional>

namespace bench {

/**
 * A process that runs a function and then exits with what it returns. It is killed with this object
 * and when its starter ends. Only for programs that have one thread and no binder yet.
 */
class ForkedProcess {
  public:
    /** Throws std::system_error when there can be no more processes. */
    explicit ForkedProcess(const std::function<int()>& run);
    ~ForkedProcess();
    ForkedProcess(const ForkedProcess&) = delete;
    ForkedProcess& operator=(const ForkedProcess&) = delete;

    /** Waits for its end; its exit status, or 128 + signal. */
    int wait();

  private:
    pid_t mPid = -1;
};

}  // namespace bench
