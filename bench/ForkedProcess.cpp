#include "ForkedProcess.h"

#include <signal.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <system_error>

namespace bench {

ForkedProcess::ForkedProcess(const std::function<int()>& run) {
    std::fflush(nullptr);  // or both would print what is waiting
    mPid = fork();
    if (mPid < 0) {
        throw std::system_error(errno, std::generic_category(), "fork");
    }
    if (mPid == 0) {
        prctl(PR_SET_PDEATHSIG, SIGKILL);
        const int status = run();
        std::fflush(nullptr);
        _exit(status);
    }
}

ForkedProcess::~ForkedProcess() {
    if (mPid > 0) {
        kill(mPid, SIGKILL);
        wait();
    }
}

int ForkedProcess::wait() {
    int status = 0;
    waitpid(mPid, &status, 0);
    mPid = -1;
    return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
}

}  // namespace bench
