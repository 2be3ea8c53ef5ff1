// servicemanager: the context manager, where services are known by their names.

#include <limits>
#include <memory>

// The binder headers need the two above.
#include <binder/BinderProbe.h>
#include <binder/IPCThreadState.h>
#include <binder/LocalCall.h>
#include <binder/ProcessState.h>
#include <unistd.h>

#include <CLI/CLI.hpp>
#include <iostream>

#include "ServiceManager.h"

using android::IPCThreadState;
using android::ProcessState;
using android::ServiceManager;
using android::sp;

namespace {

constexpr int kFailure = 1;
constexpr int kWrongUsage = 2;
constexpr uid_t kSystemUid = 1000;

int fail(const std::string& problem) {
    std::cerr << "servicemanager: " << problem << '\n';
    return kFailure;
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

int run(int argc, char** argv) {
    CLI::App app(
            "The service manager of binder: becomes the context manager and serves until it is "
            "stopped",
            "servicemanager");
    app.set_version_flag("--version", "servicemanager " KELVO_VERSION);
    app.footer(
            "The driver is what KELVO_BINDER names (kernel or hub), else /dev/binder when it\n"
            "opens, else the hub at dev/binderhub below KELVO_ROOT.");
    try {
        app.parse(argc, argv);
    } catch (const CLI::Success& request) {
        return app.exit(request);
    } catch (const CLI::ParseError& error) {
        std::cerr << "servicemanager: " << error.what() << ": command line\n"
                  << "Run servicemanager --help for the usage.\n";
        return kWrongUsage;
    }
    return serve();
}

}  // namespace

int main(int argc, char** argv) {
    try {
        return run(argc, argv);
    } catch (const std::exception& error) {
        return fail(error.what());
    }
}
