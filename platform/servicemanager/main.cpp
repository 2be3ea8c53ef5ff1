// servicemanager: the context manager, where services are known by their names.

#include <android-base/unique_fd.h>
#include <binder/IPCThreadState.h>
#include <binder/ProcessState.h>
#include <binder_linux/BinderProbe.h>
#include <binder_linux/LocalCall.h>
#include <poll.h>
#include <sys/timerfd.h>
#include <unistd.h>

#include <array>
#include <iostream>

#include "CommandLine.h"
#include "ServiceManager.h"

using android::IPCThreadState;
using android::ProcessState;
using android::ServiceManager;
using android::sp;
using android::base::unique_fd;

namespace {

constexpr uid_t kSystemUid = 1000;

int fail(const std::string& problem) {
    command_line::complain("servicemanager", problem);
    return command_line::kFailed;
}

void registerItself(const sp<ServiceManager>& manager) {
    const android::LocalCall call(kSystemUid, getpid());
    manager->addService("manager", manager, false,
                        android::os::IServiceManager::DUMP_FLAG_PRIORITY_DEFAULT);
}

/** A descriptor that is readable once in each interval; it must be read to be so again. */
unique_fd makeTimer(std::chrono::seconds interval) {
    unique_fd timer(timerfd_create(CLOCK_MONOTONIC, TFD_CLOEXEC));
    itimerspec setting = {};
    setting.it_interval.tv_sec = interval.count();
    setting.it_value = setting.it_interval;
    if (timer.get() >= 0 && timerfd_settime(timer.get(), 0, &setting, nullptr) != 0) {
        timer.reset();
    }
    return timer;
}

/** Carries out calls, and checks for clients at each interval. Returns when the driver is gone. */
void answerCalls(ServiceManager& manager) {
    IPCThreadState* const thread = IPCThreadState::self();
    int driver = -1;
    const unique_fd timer = makeTimer(ServiceManager::kClientCheckInterval);
    if (timer.get() < 0 || thread->setupPolling(&driver) != android::OK) {
        return;
    }
    std::array<pollfd, 2> fds = {{{driver, POLLIN, 0}, {timer.get(), POLLIN, 0}}};
    android::status_t status = android::OK;
    while (status == android::OK) {
        if (TEMP_FAILURE_RETRY(poll(fds.data(), fds.size(), -1)) < 0) {
            return;
        }
        uint64_t intervals = 0;
        if (fds[1].revents != 0 && read(timer.get(), &intervals, sizeof(intervals)) > 0) {
            manager.checkClients();
            // What the descriptor would have told of its calls may have read: ask the driver anew.
            status = thread->setupPolling(&driver);
        }
        if (fds[0].revents != 0 && status == android::OK) {
            status = thread->handlePolledCommands();
        }
    }
}

/** Serves until the driver is gone, on this thread alone. */
int serve() {
    std::string error;
    if (!android::isBinderDriverReachable(&error)) {
        return fail(error);
    }
    const sp<ProcessState> process = ProcessState::self();
    process->setThreadPoolMaxThreadCount(0);
    process->setCallRestriction(ProcessState::CallRestriction::FATAL_IF_NOT_ONEWAY);
    const sp<ServiceManager> manager = new ServiceManager();
    registerItself(manager);
    IPCThreadState::self()->setTheContextObject(manager);
    const bool isManager = process->becomeContextManager(nullptr, nullptr);
    const std::string driver = process->getDriverName().string();
    if (!isManager) {
        return fail("another service manager serves there: " + driver);
    }
    // Whoever started this may wait for the line: from now on calls are answered.
    std::cout << "servicemanager: serving on " << driver << std::endl;
    answerCalls(*manager);
    return fail("the binder driver is gone: " + driver);
}

void setUp(CLI::App& app, int& status) {
    app.footer(
            "The driver is what KELVO_BINDER names (kernel or hub), else /dev/binder when it\n"
            "opens, else the hub at dev/binderhub below KELVO_ROOT.");
    app.callback([&status] { status = serve(); });
}

}  // namespace

int main(int argc, char** argv) {
    return command_line::run(
            argc, argv, "servicemanager",
            "The service manager of binder: becomes the context manager and serves "
            "until it is stopped",
            setUp);
}
