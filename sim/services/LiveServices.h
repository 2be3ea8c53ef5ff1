#pragma once

#include <fstream>
#include <string>

#include "sim/services/PhoneServices.h"
#include "sim/services/ServiceProcess.h"
#include "sim/tree/DeviceTree.h"

namespace sim {

/**
 * The services of a live phone, each as a process of its own. What they are told by the daemon is
 * in "/data/services.jsonl" of the phone, one JSON object a line. Not thread-safe. Failures throw.
 */
class LiveServices {
  public:
    /**
     * Starts what the scenario has at its start; `programs` is the folder of our programs. Needs
     * the phone's service manager. `scenario` lives longer than this.
     */
    LiveServices(const Scenario& scenario, DeviceTree& tree, const std::string& programs);

    PhoneServices& services() { return mServices; }
    /** Takes down what the services have been told; `timeMs` becomes its time. */
    void takeEvents(int64_t timeMs);

  private:
    void declare(DeviceTree& tree) const;
    void write(Event event);

    int64_t mTimeMs = 0;
    std::ofstream mEvents;
    PhoneServices mServices;
};

}  // namespace sim
