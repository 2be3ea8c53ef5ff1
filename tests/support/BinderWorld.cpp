#include "support/BinderWorld.h"

#include <binder/IBinder.h>
#include <binder/ProcessState.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <stdlib.h>
#include <sys/stat.h>
#include <unistd.h>

#include <chrono>
#include <functional>
#include <memory>
#include <stdexcept>

#include "HubClient.h"
#include "HubSocket.h"
#include "support/Files.h"
#include "support/Json.h"

namespace {

using Clock = std::chrono::steady_clock;

constexpr int kPauseMs = 2;  // between looks at a child that has no event of its own

/** Whether the condition came to hold while the child lived; false at once when that ended. */
bool waitWhileAlive(ChildProcess& child, Clock::time_point limit,
                    const std::function<bool()>& holds) {
    while (!holds()) {
        if (child.wait(kPauseMs).has_value() || Clock::now() > limit) {
            return false;
        }
    }
    return true;
}

Clock::time_point limitFromNow() {
    return Clock::now() + std::chrono::milliseconds(kBinderWorldLimitMs);
}

bool hubAnswers() {
    std::string state, error;
    return binderhub::hubState(binderhub::defaultSocket(), &state, &error) == 0;
}

bool serviceManagerAnswers() {
    const android::sp<android::IBinder> manager =
            android::ProcessState::self()->getContextObject(nullptr);
    return manager != nullptr && manager->pingBinder() == android::OK;
}

}  // namespace

BinderWorld::BinderWorld() {
    setenv("KELVO_BINDER", "hub", 0);
    if (geteuid() == 0) {
        chmod(environment("KELVO_ROOT").c_str(), 0711);  // for roles that are other users
    }
    if (!onKernel()) {
        startHub();
    }
    startServiceManager();
}

BinderWorld::~BinderWorld() {
    mRoles.clear();
    mServiceManager->kill();
    if (mHub) {
        endHub();
    }
}

void BinderWorld::endHub() {
    mHub->signal(SIGTERM);
    EXPECT_EQ(0, mHub->wait().value_or(-1)) << "how the hub ended";
    mHub.reset();
}

void BinderWorld::startHub() {
    mHub = std::make_unique<ChildProcess>(programPath("binderhub"));
    if (!waitWhileAlive(*mHub, limitFromNow(), hubAnswers)) {
        throw std::runtime_error("binderhub does not start");
    }
}

// The kernel gives the place of an ended service manager free a little later only: try again.
void BinderWorld::startServiceManager() {
    const Clock::time_point limit = limitFromNow();
    do {
        mServiceManager = std::make_unique<ChildProcess>(programPath("servicemanager"));
        if (waitWhileAlive(*mServiceManager, limit, serviceManagerAnswers)) {
            return;
        }
    } while (onKernel() && Clock::now() < limit);
    throw std::runtime_error("servicemanager does not start");
}

RoleProcess& BinderWorld::start(const std::string& role, const std::string& argument,
                                std::optional<uid_t> uid) {
    return *mRoles.emplace_back(std::make_unique<RoleProcess>(role, argument, uid));
}

Json::Value BinderWorld::hubState() {
    std::string text, error;
    EXPECT_EQ(0, binderhub::hubState(binderhub::defaultSocket(), &text, &error)) << error;
    return parsed(text);
}

bool BinderWorld::onKernel() {
    return environment("KELVO_BINDER") == "kernel";
}

uid_t BinderWorld::expectedUid(uid_t uid) {
    constexpr uid_t kSystemUid = 1000;
    return !onKernel() && uid == geteuid() ? kSystemUid : uid;
}
