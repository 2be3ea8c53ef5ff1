// A service's own process.

#include <binder/ProcessState.h>
#include <unistd.h>

#include <iostream>
#include <memory>
#include <mutex>

#include "sim/services/ActionLine.h"
#include "sim/services/ServiceProcess.h"

namespace sim {

namespace {

std::mutex sOutput;  // guards standard output: lines come from any thread

void writeLine(const std::string& line) {
    const std::lock_guard lock(sOutput);
    std::cout << line << std::endl;
}

}  // namespace

int serveService(const std::string& name) {
    const ServiceKind& kind = serviceKind(name);
    ServiceValues values;
    std::unique_ptr<PhoneService> service;
    const ServiceContext context{
            .values = values,
            .onEvent = [](const Event& event) { writeLine(toJsonLine(event)); },
            .onClient = [] { writeLine(kServiceClient); }};
    for (std::string line; std::getline(std::cin, line);) {
        if (line == kServeCommand) {
            service = kind.make(context);
            android::ProcessState::self()->startThreadPool();
            writeLine(kServiceReady);
            continue;
        }
        const Deed deed = parseActionLine(line);
        values.take(deed);
        if (service != nullptr && kind.concerns(deed)) {
            service->perform(deed);
        }
    }
    // Binder threads may be calling: nothing that they use is taken away under them.
    _exit(0);
}

}  // namespace sim
