#include "Services.h"

#include <binder_linux/BinderProbe.h>
#include <string.h>

#include "Output.h"
#include "Phone.h"

namespace kelvoctl {

using android::IBinder;
using android::IServiceManager;
using android::sp;

sp<IServiceManager> serviceManager() {
    if (!phoneRoot().empty()) {
        requirePhone();  // a wrong root must not lead to the machine's own driver
    }
    std::string why;
    if (!android::isServiceManagerReachable(&why)) {
        throw Failure("no phone to talk to", noPhone(why));
    }
    return android::defaultServiceManager();
}

sp<IBinder> findService(const std::string& name) {
    sp<IBinder> service = serviceManager()->checkService(toString16(name));
    if (service == nullptr) {
        throw Failure("no such service", name);
    }
    return service;
}

android::String16 toString16(const std::string& text) {
    return android::String16(text.c_str(), text.size());
}

void checkStatus(android::status_t status, const std::string& call) {
    switch (status) {
        case android::OK:
            return;
        case android::PERMISSION_DENIED:
            throw Failure("permission denied", call);
        case android::UNKNOWN_TRANSACTION:
            throw Failure("the service does not know this call", call);
        case android::DEAD_OBJECT:
            throw Failure("the service died", call);
        case android::FAILED_TRANSACTION:
            throw Failure("the call could not be delivered", call);
        default:
            throw Failure("the call failed with status " + std::to_string(status), call);
    }
}

}  // namespace kelvoctl
