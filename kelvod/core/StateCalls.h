#pragma once

#include <cstdint>
#include <string>

namespace kelvo {

/** What the central state asks and tells engines. Thread-safe. */
class StateCalls {
  public:
    virtual ~StateCalls() = default;
    /** The status value that clients know; 0 by default. */
    virtual int32_t thermalStatus() { return 0; }
    /** mA; -1 when the charger service cannot be reached, and by default. */
    virtual int32_t batteryCurrentNow() { return -1; }
    /** Gives the fitting loop a scene text, which sets its cadence; by default does nothing. */
    virtual void enterScene(const std::string& /*text*/) {}
};

}  // namespace kelvo
