#include "support/RoleProcess.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <signal.h>
#include <stdlib.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cstdio>
#include <map>
#include <system_error>

#include "support/Files.h"

extern "C" {  // glibc's header does not say so itself
#include <sys/pidfd.h>
}

namespace {

using android::base::unique_fd;

constexpr char kRoleName[] = "KELVO_TEST_ROLE";
constexpr char kRoleSocket[] = "KELVO_TEST_ROLE_SOCKET";
constexpr char kRoleArgument[] = "KELVO_TEST_ROLE_ARGUMENT";
constexpr char kRoleUid[] = "KELVO_TEST_ROLE_UID";
constexpr size_t kLongestText = 64 * 1024;

// Its starter is all that would end it.
void endWithStarter() {
    prctl(PR_SET_PDEATHSIG, SIGKILL);
}

bool becomeUser(const std::string& text) {
    if (text.empty()) {
        return true;
    }
    const auto uid = static_cast<uid_t>(std::stoul(text));
    const bool done = setresgid(uid, uid, uid) == 0 && setresuid(uid, uid, uid) == 0;
    endWithStarter();  // the change took it away
    return done;
}

std::map<std::string, Role::Function>& roles() {
    static std::map<std::string, Role::Function> all;
    return all;
}

/** Runs the role in place of the tests, once the program is set up as for them. */
class RoleStarter : public testing::EmptyTestEventListener {
    void OnTestProgramStart(const testing::UnitTest&) override {
        const std::string name = environment(kRoleName);
        if (name.empty()) {
            return;
        }
        if (!becomeUser(environment(kRoleUid))) {
            std::perror("setresuid");
            _exit(1);
        }
        RoleLink link(unique_fd(std::stoi(environment(kRoleSocket))), environment(kRoleArgument));
        const int status = roles().at(name)(link);
        std::fflush(nullptr);
        _exit(status);
    }
};

const bool kStarterAdded = [] {
    testing::UnitTest::GetInstance()->listeners().Append(new RoleStarter);
    return true;
}();

}  // namespace

RoleLink::RoleLink(unique_fd socket, std::string argument)
      : mSocket(std::move(socket)), mArgument(std::move(argument)) {}

bool RoleLink::send(const std::string& text) {
    return ::send(mSocket.get(), text.data(), text.size(), MSG_NOSIGNAL) >= 0;
}

std::string RoleLink::receive(int limitMs) {
    pollfd fd{mSocket.get(), POLLIN, 0};
    std::string text(kLongestText, '\0');
    if (poll(&fd, 1, limitMs) != 1) {
        return "";
    }
    const ssize_t size = recv(mSocket.get(), text.data(), text.size(), 0);
    text.resize(size > 0 ? static_cast<size_t>(size) : 0);
    return text;
}

std::string RoleLink::ask(const std::string& text) {
    send(text);
    return receive();
}

Role::Role(const char* name, Function function) {
    roles()[name] = function;
}

ChildProcess::ChildProcess(const std::string& path, const std::vector<std::string>& extra,
                           int inheritedFd) {
    // All that takes memory comes before the fork: another thread may hold its locks then.
    std::vector<char*> settings;
    for (const std::string& setting : extra) {
        settings.push_back(const_cast<char*>(setting.c_str()));
    }
    for (char** setting = environ; *setting != nullptr; ++setting) {
        settings.push_back(*setting);
    }
    settings.push_back(nullptr);
    const std::array<char*, 2> argv{const_cast<char*>(path.c_str()), nullptr};
    mPid = fork();
    if (mPid == 0) {
        endWithStarter();
        if (inheritedFd >= 0) {
            fcntl(inheritedFd, F_SETFD, 0);
        }
        execve(path.c_str(), argv.data(), settings.data());
        _exit(127);
    }
    mPidFd.reset(pidfd_open(mPid, 0));
    if (mPid < 0 || mPidFd.get() < 0) {
        throw std::system_error(errno, std::generic_category(), "starting " + path);
    }
}

ChildProcess::~ChildProcess() {
    kill();
}

void ChildProcess::kill() {
    if (!wait(0)) {
        signal(SIGKILL);
        wait();
        mStatus = 0;  // as it was told
    }
}

void ChildProcess::signal(int number) const {
    ::kill(mPid, number);
    if (number == SIGSTOP) {
        siginfo_t info;
        waitid(P_PID, static_cast<id_t>(mPid), &info, WSTOPPED | WEXITED | WNOWAIT);
    }
}

std::optional<int> ChildProcess::wait(int limitMs) {
    pollfd fd{mPidFd.get(), POLLIN, 0};
    if (!mStatus && poll(&fd, 1, limitMs) == 1) {
        int status = 0;
        waitpid(mPid, &status, 0);
        mStatus = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
    }
    return mStatus;
}

struct RoleProcess::Ends {
    Ends() {
        std::array<int, 2> ends{};
        if (socketpair(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0, ends.data()) != 0) {
            throw std::system_error(errno, std::generic_category(), "socketpair");
        }
        ours.reset(ends[0]);
        theirs.reset(ends[1]);
    }
    unique_fd ours;
    unique_fd theirs;
};

RoleProcess::RoleProcess(const std::string& role, const std::string& argument,
                         std::optional<uid_t> uid)
      : RoleProcess(role, argument, uid, Ends()) {}

RoleProcess::RoleProcess(const std::string& role, const std::string& argument,
                         std::optional<uid_t> uid, Ends ends)
      : RoleLink(std::move(ends.ours), ""),
        ChildProcess(
                std::filesystem::read_symlink("/proc/self/exe"),
                {std::string(kRoleName) + "=" + role, std::string(kRoleArgument) + "=" + argument,
                 std::string(kRoleUid) + "=" + (uid ? std::to_string(*uid) : ""),
                 std::string(kRoleSocket) + "=" + std::to_string(ends.theirs.get())},
                ends.theirs.get()) {}

RoleProcess::~RoleProcess() {
    kill();
    EXPECT_EQ(0, *wait()) << "how process " << pid() << " ended by itself";
}
