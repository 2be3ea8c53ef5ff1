#pragma once

#include <android-base/unique_fd.h>
#include <sys/types.h>

#include <optional>
#include <string>
#include <vector>

/**
 * Processes that speak binder. The test program starts itself again for each further process and
 * runs a *role* there instead of the tests:
 *
 *     int serve(RoleLink& link) { … link.send("ready"); link.receive(); return 0; }
 *     const Role kServe("serve", serve);
 *
 *     TEST(…) {
 *         BinderWorld world;
 *         RoleProcess& server = world.start("serve");
 *         EXPECT_EQ("ready", server.receive());
 */

/** How long to wait for what comes soon, also on a slow machine. */
constexpr int kBinderWorldLimitMs = 30000;

/** One end of the texts between a test and a role. Thread-safe. */
class RoleLink {
  public:
    RoleLink(android::base::unique_fd socket, std::string argument);

    /** False when the other end is gone. */
    bool send(const std::string& text);
    /** The next text; "" when the other end is gone or nothing comes within the limit. */
    std::string receive(int limitMs = kBinderWorldLimitMs);
    /** Sends a text and receives the answer. */
    std::string ask(const std::string& text);
    /** In a role: what start() was given. */
    const std::string& argument() const { return mArgument; }

  private:
    const android::base::unique_fd mSocket;
    const std::string mArgument;
};

/** Names a function that processes can run; at namespace scope. Its result is the exit status. */
class Role {
  public:
    using Function = int (*)(RoleLink& link);
    Role(const char* name, Function function);
};

/** A child process, killed with the object. */
class ChildProcess {
  public:
    /** Starts the program at `path`; `extra` are settings of its environment besides our own. */
    explicit ChildProcess(const std::string& path, const std::vector<std::string>& extra = {},
                          int inheritedFd = -1);
    ~ChildProcess();
    ChildProcess(const ChildProcess&) = delete;
    ChildProcess& operator=(const ChildProcess&) = delete;

    pid_t pid() const { return mPid; }
    /** Ends it at once, by SIGKILL, and waits for its end. */
    void kill();
    /** Returns when a SIGSTOP has stopped it, also on a busy machine. */
    void signal(int number) const;
    /** Waits for its end: exit status, 128 + signal, or none within the limit. */
    std::optional<int> wait(int limitMs = kBinderWorldLimitMs);

  private:
    pid_t mPid = -1;
    android::base::unique_fd mPidFd;
    std::optional<int> mStatus;
};

/** A process in a role: the test's end. */
class RoleProcess : public RoleLink, public ChildProcess {
  public:
    /** `uid` not none: it becomes that user before anything else, which only root can. */
    RoleProcess(const std::string& role, const std::string& argument, std::optional<uid_t> uid);
    /** Fails the test when the role ended by a signal of its own or a status other than 0. */
    ~RoleProcess();

  private:
    struct Ends;
    RoleProcess(const std::string& role, const std::string& argument, std::optional<uid_t> uid,
                Ends ends);
};
