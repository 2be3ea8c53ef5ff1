#pragma once

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>

#include "sim/process/BinderPlatform.h"
#include "support/RoleProcess.h"
#include "system/Hal.h"
#include "system/LogFile.h"

/**
 * A role: finds the daemon, sends "ready" and does what it is told: "WHAT FIRST LAST TOLD" is the
 * call with that code, or a dump to that file, with each of these numbers; it sends "now" after
 * TOLD, and at the end the last status.
 */
inline constexpr char kFaultClientRole[] = "faultClient";

/** What must hold; see docs/reliability.md. */
enum Promise : unsigned {
    kLives = 1,      // the daemon has not ended, lost nothing and says nothing bad
    kAnswers = 2,    // a call comes back
    kPublishes = 4,  // a temperature that moves gets to /proc/shell-temp
    kTells = 8,      // listeners are told of a new level
    kUses = 16,      // services that call back or are told something hear of the daemon
    kEnds = 32,      // the daemon ends by itself
    kIsSilent = 64,  // no call comes back: for longer than anybody waits for another
    kKeepsOn = kLives | kAnswers | kPublishes | kTells,
    kAll = kKeepsOn | kUses,
};

/**
 * A simulated phone of processes, each of which can be killed and stopped, and what starts them
 * again. This process speaks no binder itself, so that the hub may die as well.
 */
class FaultPhone {
  public:
    /** Boots; `health` is the kind of its health HAL. */
    explicit FaultPhone(const std::string& health);

    /** A shell command may go before kelvod's. */
    void startKelvod(const std::string& before = "");
    /** Listeners and who asks; they find the daemon before this returns. */
    void startClients();
    /** SIGKILL or SIGSTOP to "kelvod", "hub", "servicemanager", "listener" or a HAL. */
    void strike(const std::string& victim, int signal);
    /** Starts what was killed again, with what depends on it, or lets go on what was stopped. */
    void repair(const std::string& victim, int signal);
    /** Runs a command of the shell, which knows ROOT, ZONE, OUT, CONF and PID, the daemon's. */
    void run(const std::string& command) const;
    /** Has the client make calls; with `told`, returns when that one is done. False at the limit.
     */
    bool call(const std::string& what, int first, int last, int told = -1);
    /** Waits until the client has made its calls: the last status, "" at the limit. */
    std::string finish();
    void moveShell();
    /** The first of these promises that does not hold, in words; "" when all do. */
    std::string broken(unsigned promises);

    const std::string health;
    const std::string root;
    const LogFile log;  // kelvod's

  private:
    void build() const;
    void boot();
    pid_t pid(const std::string& victim) const;
    bool isPublished() const;
    bool isTold(RoleProcess& listener) const;
    bool isUsed();
    std::string unsound() const;

    std::optional<sim::BinderPlatform> mBinder;
    std::map<std::string, std::unique_ptr<Hal>> mHals;
    std::optional<sim::PhoneProcess> mKelvod;
    std::unique_ptr<RoleProcess> mClient, mListener, mOther;
    bool mIsDeaf = false;    // mListener is not to be asked
    int32_t mShell = 40200;  // m°C
    int32_t mScreen = 1000;  // the last status told
    int mCalling = 0;        // what the client has still to answer
};
