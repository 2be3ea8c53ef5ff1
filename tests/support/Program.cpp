#include "support/Program.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <signal.h>
#include <stdlib.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <fstream>

#include "support/Files.h"

namespace {

constexpr int kLimitMs = 30000;

bool readSome(int fd, std::string& text) {
    std::array<char, 4096> buffer;
    const ssize_t size = read(fd, buffer.data(), buffer.size());
    if (size > 0) {
        text.append(buffer.data(), static_cast<size_t>(size));
    }
    return size > 0;
}

}  // namespace

Program::Program(const std::string& name, const std::vector<std::string>& arguments,
                 const std::string& temporaryFolder) {
    std::array<int, 2> out{};
    std::array<int, 2> err{};
    if (pipe2(out.data(), O_CLOEXEC) != 0 || pipe2(err.data(), O_CLOEXEC) != 0) {
        std::abort();
    }
    mPid = fork();
    if (mPid == 0) {
        prctl(PR_SET_PDEATHSIG, SIGKILL);
        dup2(out[1], STDOUT_FILENO);
        dup2(err[1], STDERR_FILENO);
        unsetenv("KELVO_ROOT");
        // Tests share no driver with their machine unless they are told to.
        setenv("KELVO_BINDER", "hub", 0);
        if (!temporaryFolder.empty()) {
            setenv("TMPDIR", temporaryFolder.c_str(), 1);
        }
        std::string path = programPath(name);
        std::vector<char*> argv{path.data()};
        for (const std::string& argument : arguments) {
            argv.push_back(const_cast<char*>(argument.c_str()));
        }
        argv.push_back(nullptr);
        execv(path.c_str(), argv.data());
        _exit(127);
    }
    close(out[1]);
    close(err[1]);
    mOut = out[0];
    mErr = err[0];
}

Program::~Program() {
    if (mPid > 0) {
        kill(mPid, SIGKILL);
        waitpid(mPid, nullptr, 0);
    }
    close(mOut);
    close(mErr);
}

// Waits for output of either kind; false when both have ended or the limit is over.
bool Program::fill(int timeoutMs) {
    std::array<pollfd, 2> fds{{{mOut, POLLIN, 0}, {mErr, POLLIN, 0}}};
    if (poll(fds.data(), fds.size(), timeoutMs) <= 0) {
        return false;
    }
    const bool gotOut = fds[0].revents != 0 && readSome(mOut, mOutText);
    const bool gotErr = fds[1].revents != 0 && readSome(mErr, mErrText);
    return gotOut || gotErr;
}

std::optional<std::string> Program::readLine() {
    size_t end = 0;
    while ((end = mOutText.find('\n', mLineStart)) == std::string::npos) {
        if (!fill(kLimitMs)) {
            return std::nullopt;
        }
    }
    const std::string line = mOutText.substr(mLineStart, end - mLineStart);
    mLineStart = end + 1;
    return line;
}

std::string Program::lineWith(const std::string& text) {
    std::optional<std::string> line;
    do {
        line = readLine();
    } while (line && line->find(text) == std::string::npos);
    return line.value_or("");
}

Program::Result Program::wait() {
    while (fill(kLimitMs)) {
    }
    int status = 0;
    waitpid(mPid, &status, 0);
    mPid = -1;
    return {WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status), mOutText, mErrText};
}

void Program::signal(int number) const {
    kill(mPid, number);
}

std::vector<pid_t> Program::childrenOf(pid_t parent) {
    const std::string pid = std::to_string(parent);
    std::ifstream file("/proc/" + pid + "/task/" + pid + "/children");
    std::vector<pid_t> pids;
    for (pid_t child = 0; file >> child;) {
        pids.push_back(child);
    }
    return pids;
}

Program::Result Program::run(const std::string& name, const std::vector<std::string>& arguments) {
    return Program(name, arguments).wait();
}

Program::Result Program::runRooted(const std::string& root, const std::string& name,
                                   const std::vector<std::string>& arguments,
                                   const std::vector<std::string>& before) {
    std::vector<std::string> command{"KELVO_ROOT=" + root};
    command.insert(command.end(), before.begin(), before.end());
    command.push_back(name);
    command.insert(command.end(), arguments.begin(), arguments.end());
    return run("/usr/bin/env", command);
}

std::string Program::completed(const std::string& script, const std::string& words) {
    const std::string function = "_" + words.substr(0, words.find(' '));
    const Result result = runRooted(getenv("KELVO_ROOT"), "bash",
                                    {"-eu", "-c",
                                     "source " + script + "; COMP_WORDS=(" + words + ");" +
                                             " COMP_CWORD=$((${#COMP_WORDS[@]} - 1)); " + function +
                                             "; echo -n \"${COMPREPLY[*]}\""});
    EXPECT_EQ(result.status, 0) << words;
    EXPECT_EQ(result.err, "") << words;
    return result.out;
}
