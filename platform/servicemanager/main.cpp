// servicemanager: the context manager, where services are known by their names.

#include <binder/IPCThreadState.h>
#include <binder/ProcessState.h>
#include <binder_linux/BinderProbe.h>
#include <binder_linux/LocalCall.h>
#include <unistd.h>

#include <iostream>

#include "CommandLine.h"
#include "ServiceManager.h"

using android::IPCThreadState;
using android::ProcessState;
using android::ServiceManager;
using android::sp;

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
    IPCThreadState::self()->joinThreadPool();
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
