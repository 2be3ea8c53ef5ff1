#include "sim/process/RootedRun.h"
#include "sim/tree/TemporaryFolder.h"

#include <signal.h>
#include <stdlib.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <system_error>

namespace sim {

namespace {

constexpr char kMark[] = "KELVOSIM_OWN_ROOT";

[[noreturn]] void execBelow(const std::string& root, char** argv, const sigset_t& mask) {
    // Nobody would remove the folder of a run whose starter is gone.
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    setenv("KELVO_ROOT", root.c_str(), 1);
    setenv(kMark, root.c_str(), 1);
    sigprocmask(SIG_SETMASK, &mask, nullptr);
    execv("/proc/self/exe", argv);
    std::perror("/proc/self/exe");
    _exit(127);
}

}  // namespace

bool runsBelowOwnRoot() {
    const char* const mark = getenv(kMark);
    const char* const root = getenv("KELVO_ROOT");
    return mark != nullptr && root != nullptr && std::string(mark) == root;
}

int runBelowOwnRoot(char** argv, const std::function<void(DeviceTree&)>& prepare) {
    TemporaryFolder root("kelvo-root-", temporaryMemory());
    {
        DeviceTree tree(root.path());
        prepare(tree);
    }
    signal(SIGCHLD, SIG_DFL);  // inherited as ignored, it would take the exit status away
    sigset_t stops;
    sigset_t before;
    sigemptyset(&stops);
    for (const int signal : {SIGINT, SIGTERM, SIGHUP, SIGCHLD}) {
        sigaddset(&stops, signal);
    }
    sigprocmask(SIG_BLOCK, &stops, &before);
    const pid_t child = fork();
    if (child < 0) {
        throw std::system_error(errno, std::generic_category(), "fork");
    }
    if (child == 0) {
        execBelow(root.path(), argv, before);
    }
    int status = 0;
    while (waitpid(child, &status, WNOHANG) == 0) {
        int signal = 0;
        sigwait(&stops, &signal);
        if (signal != SIGCHLD) {
            kill(child, signal);
        }
    }
    sigprocmask(SIG_SETMASK, &before, nullptr);
    return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
}

}  // namespace sim
