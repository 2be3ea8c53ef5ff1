#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "sim/virtual/VirtualPhone.h"

/**
 * The daemon's engines on the phone of an example, in virtual time, started once a process: time
 * never goes back, so what one input does is over before the next one begins. Failures throw.
 */
class FuzzPhone {
  public:
    /** The first caller's example is the process's. */
    static FuzzPhone& get(const char* example = "game");

    const sim::Scenario& scenario() const { return mScenario; }
    void perform(const sim::Deed& deed) { mPhone->perform(deed); }
    /** A call of the system's without a reply. */
    void tell(uint32_t code, int32_t value) { perform(sim::Transact{code, {value}, {}, 1000}); }
    void run(int64_t milliseconds) { mPhone->runUntil(mPhone->now() + milliseconds); }
    /** A file of the configuration, stored as it stands. */
    void store(std::string_view path, std::string_view bytes);
    /** Asks for the configuration to be read again, and waits until it has been. */
    void reload();
    /** All zones at this temperature (m°C). */
    void setZones(int32_t temp);
    /** Everything that a client can ask. */
    void askAll();

  private:
    explicit FuzzPhone(const char* example);

    sim::Scenario mScenario;
    std::optional<sim::VirtualPhone> mPhone;
};
