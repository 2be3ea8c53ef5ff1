#include "sim/live/FrameworkProcess.h"

#include <binder/IServiceManager.h>
#include <binder/ProcessState.h>
#include <unistd.h>

#include <iostream>
#include <mutex>
#include <string>
#include <type_traits>

#include "sim/framework/FrameworkClient.h"

namespace sim {

namespace {

/** Writes whole lines from whichever thread. */
class Lines {
  public:
    void write(const std::string& line) {
        const std::lock_guard lock(mMutex);
        std::cout << line << std::endl;
    }

  private:
    std::mutex mMutex;  // guards standard output
};

void perform(const Deed& deed, FrameworkClient& client) {
    // A phone's framework starts before the daemon does: it waits for it.
    android::defaultServiceManager()->waitForService(android::String16("kelvo"));
    std::visit(
            [&client](const auto& action) {
                if constexpr (kIsFrameworkDeed<std::decay_t<decltype(action)>>) {
                    client.perform(action);
                }
            },
            deed);
}

}  // namespace

void runFrameworkProcess(const Scenario& scenario) {
    Lines lines;
    FrameworkClient client([&lines](const Event& event) { lines.write(toJsonLine(event)); });
    android::ProcessState::self()->startThreadPool();
    for (std::string line; std::getline(std::cin, line);) {
        perform(scenario.timeline.at(std::stoul(line)).deed, client);
        lines.write(kFrameworkActionDone);
    }
    // Binder threads may still be about to call: nothing that they use is taken away under them.
    _exit(0);
}

}  // namespace sim
