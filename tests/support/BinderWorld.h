#pragma once

#include <json/json.h>

#include <memory>
#include <string>
#include <vector>

#include "support/RoleProcess.h"

/**
 * Binder below the test's own device root: a hub, unless KELVO_BINDER is "kernel", and a service
 * manager, both ready. One in a process: it lets the test's own process use the driver, which stays
 * bound to this hub. Used on the main thread only.
 */
class BinderWorld {
  public:
    /** Throws std::runtime_error when one of them does not start. */
    BinderWorld();
    /** Ends all processes; fails the test when the hub had a fault of its own. */
    ~BinderWorld();

    /** Starts a process in this role; it lives until it is killed or the world ends. */
    RoleProcess& start(const std::string& role, const std::string& argument = "",
                       std::optional<uid_t> uid = std::nullopt);
    /** Kills and forgets all processes in roles. */
    void endRoles() { mRoles.clear(); }

    /** Ends the hub as its user would: everybody's driver is gone. Not on the kernel's driver. */
    void endHub();

    pid_t serviceManager() const { return mServiceManager->pid(); }
    /** What `binderhub state` prints. Not on the kernel's driver. */
    static Json::Value hubState();

    static bool onKernel();
    /** What a service sees as the uid of a caller that runs as `uid`. */
    static uid_t expectedUid(uid_t uid);

  private:
    void startHub();
    void startServiceManager();

    std::unique_ptr<ChildProcess> mHub;
    std::unique_ptr<ChildProcess> mServiceManager;
    std::vector<std::unique_ptr<RoleProcess>> mRoles;
};
