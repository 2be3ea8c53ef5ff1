#include <cstdlib>

#include "BinderDriver.h"

namespace android {

namespace {

constexpr char kKernelDevice[] = "/dev/binder";
constexpr char kHubSocket[] = "/dev/binderhub";  // below the device root

std::string environment(const char* name) {
    const char* value = getenv(name);
    return value != nullptr ? value : "";
}

std::unique_ptr<BinderDriver> openHub(std::string* error) {
    return openHubDriver(environment("KELVO_ROOT") + kHubSocket, error);
}

}  // namespace

std::unique_ptr<BinderDriver> openBinderDriver(std::string* error) {
    const std::string choice = environment("KELVO_BINDER");
    if (choice == "kernel") {
        return openKernelDriver(kKernelDevice, error);
    }
    if (choice == "hub") {
        return openHub(error);
    }
    if (!choice.empty()) {
        *error = "KELVO_BINDER is \"" + choice + "\", not \"kernel\" or \"hub\"";
        return nullptr;
    }
    std::string kernelError;
    std::unique_ptr<BinderDriver> driver = openKernelDriver(kKernelDevice, &kernelError);
    if (driver == nullptr) {
        driver = openHub(error);
        *error = kernelError + "; " + *error;
    }
    return driver;
}

}  // namespace android
