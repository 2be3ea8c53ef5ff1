#include "DriverChoice.h"

#include <HubSocket.h>

#include <cstdlib>

namespace android {

namespace {

std::unique_ptr<BinderDriver> openKernelOrHub(std::string* error) {
    std::string kernelError;
    std::unique_ptr<BinderDriver> driver = openKernelDriver(kUsualDriver, &kernelError);
    if (driver == nullptr) {
        driver = openHubDriver(binderhub::defaultSocket(), error);
        *error = kernelError + "; " + *error;
    }
    return driver;
}

}  // namespace

std::unique_ptr<BinderDriver> openBinderDriver(const std::string& name, std::string* error) {
    const char* const variable = getenv("KELVO_BINDER");
    const std::string choice = variable != nullptr ? variable : "";
    if (name != kUsualDriver || choice == "kernel") {
        return openKernelDriver(name, error);
    }
    if (choice == "hub") {
        return openHubDriver(binderhub::defaultSocket(), error);
    }
    if (!choice.empty()) {
        *error = "KELVO_BINDER is \"" + choice + "\", not \"kernel\" or \"hub\"";
        return nullptr;
    }
    return openKernelOrHub(error);
}

}  // namespace android
