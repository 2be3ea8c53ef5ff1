// A client of the daemon that does one thing again and again, see FaultPhone.h.

#include <android-base/unique_fd.h>
#include <binder/ProcessState.h>
#include <fcntl.h>

#include <sstream>

#include "FaultPhone.h"
#include "client/CallValues.h"
#include "client/StatusListener.h"
#include "system/KelvodTest.h"

namespace {

using namespace kelvo;

/** The arguments of a call that is made again and again; what has none does not read them. */
void fill(uint32_t code, int32_t number, android::Parcel& request) {
    static android::sp<android::IBinder> listener;
    if (code == REGISTER_CLIENT) {
        listener = new client::StatusListener([](const auto&, const auto&) {});
    }
    if (code == REGISTER_CLIENT || code == UNREGISTER_CLIENT) {
        request.writeStrongBinder(listener);
    } else if (code == SET_CURRENT_PACKAGE) {
        client::writeArgument(std::to_string(number), request);
    } else {
        const bool isSwitch = code == SET_LIGHT_LAMP_STATUS || code == COMPONENT_HEAT_TEST;
        request.writeInt32(isSwitch ? number % 2 + (code == COMPONENT_HEAT_TEST) : number);
    }
}

android::status_t perform(android::IBinder& kelvod, const std::string& what, int32_t number) {
    if (what.front() == '/') {
        const android::base::unique_fd file(open(what.c_str(), O_WRONLY | O_CLOEXEC));
        return kelvod.dump(file.get(), {});
    }
    auto code = static_cast<uint32_t>(std::stoul(what));
    code += code == REGISTER_CLIENT && number % 2 == 0 ? 1 : 0;  // listeners come and go
    KelvodRequest request;
    android::Parcel reply;
    fill(code, number, request);
    return kelvod.transact(code, request, &reply);
}

int act(RoleLink& link) {
    android::ProcessState::self()->startThreadPool();
    const android::sp<android::IBinder> kelvod = kelvodService();  // may not be found later
    link.send("ready");
    for (std::string text = link.receive(-1); !text.empty(); text = link.receive(-1)) {
        std::istringstream words(text);
        std::string what;
        int32_t first = 0;
        int32_t last = 0;
        int32_t told = 0;
        words >> what >> first >> last >> told;
        android::status_t status = android::OK;
        for (int32_t number = first; number <= last; ++number) {
            status = perform(*kelvod, what, number);
            if (number == told) {
                link.send("now");
            }
        }
        link.send(std::to_string(status));
    }
    return 0;
}
const Role kAct(kFaultClientRole, act);

}  // namespace
