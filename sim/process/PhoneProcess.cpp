#include "sim/process/PhoneProcess.h"

#include <fcntl.h>
#include <signal.h>
#include <stdlib.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <system_error>

namespace sim {

namespace {

[[noreturn]] void runProgram(const std::vector<std::string>& command, const std::string& root,
                             int log, int output, int input) {
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    setpgid(0, 0);  // Ctrl-C is for the one that ends it, in order
    setenv("KELVO_ROOT", root.c_str(), 1);
    if (input >= 0) {
        dup2(input, STDIN_FILENO);
    }
    dup2(output < 0 ? log : output, STDOUT_FILENO);
    dup2(log, STDERR_FILENO);
    signal(SIGPIPE, SIG_DFL);
    sigset_t none;
    sigemptyset(&none);
    sigprocmask(SIG_SETMASK, &none, nullptr);
    std::vector<char*> arguments;
    arguments.reserve(command.size() + 1);
    for (const std::string& argument : command) {
        arguments.push_back(const_cast<char*>(argument.c_str()));
    }
    arguments.push_back(nullptr);
    execvp(arguments[0], arguments.data());
    std::perror(arguments[0]);
    _exit(127);
}

std::string describe(const siginfo_t& info) {
    return (info.si_code == CLD_EXITED ? "status " : "signal ") + std::to_string(info.si_status);
}

}  // namespace

PhoneProcess::PhoneProcess(const std::vector<std::string>& command, const std::string& root,
                           const std::string& log, int output, int input) {
    const int fd = open(log.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0644);
    if (fd < 0) {
        throw std::system_error(errno, std::generic_category(), log);
    }
    mPid = fork();
    if (mPid == 0) {
        runProgram(command, root, fd, output, input);
    }
    const int error = errno;
    setpgid(mPid, mPid);  // here too, so that it holds from now on
    close(fd);
    if (mPid < 0) {
        throw std::system_error(error, std::generic_category(), "fork");
    }
}

PhoneProcess::~PhoneProcess() {
    // None of them keeps anything that a kill could lose.
    kill(-mPid, SIGKILL);
    waitpid(mPid, nullptr, 0);
}

/** Leaves it to be waited for: until then nobody else can get its number. */
std::optional<std::string> PhoneProcess::ending() const {
    siginfo_t info{};
    const bool ended =
            waitid(P_PID, static_cast<id_t>(mPid), &info, WEXITED | WNOHANG | WNOWAIT) == 0 &&
            info.si_pid == mPid;
    return ended ? std::optional(describe(info)) : std::nullopt;
}

}  // namespace sim
