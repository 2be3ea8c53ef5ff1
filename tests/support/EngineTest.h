#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "sim/virtual/VirtualPhone.h"
#include "support/Json.h"
#include "support/LogCapture.h"

/**
 * The real engines on a simulated phone in virtual time. A case fills the scenario with zones and
 * a configuration, calls startPhone(), and moves time. Each case has its own process.
 */
class EngineTest : public testing::Test {
  protected:
    EngineTest();

    /** Adds thermal_zoneN with its type and temperature (m°C). */
    void addZone(std::string type, std::optional<int32_t> temp);
    /** The main configuration file; "temp_threshold_down" is put into it. Single quotes serve as
     * double ones. */
    void setConfig(std::string json);
    void startPhone();
    /** The same with just these scenes, each as scene() gives it. */
    void setScenes(const std::string& scenes);
    /** Builds the tree but leaves the daemon's engines alone. */
    void buildPhone();

    sim::VirtualPhone& phone() { return *mPhone; }
    /** Runs up to `seconds` after t = 0. */
    void runUntil(double seconds);
    void setTemp(int32_t zone, std::optional<int32_t> temp);

    /** Texts written to "/proc/shell-temp" since the last call. */
    std::vector<std::string> takeWrites();
    /** All other events since the last call: lines of JSON from "event" on, with single quotes. */
    std::vector<std::string> takeEvents();
    /** Those of them that went to listeners, as "kind number…": "status 3", "broadcast 3 36000". */
    std::vector<std::string> takeCalls();

    LogCapture log;
    sim::Scenario scenario;

  private:
    std::unique_ptr<sim::VirtualPhone> mPhone;
    std::vector<std::string> mWrites;
    std::vector<sim::Event> mEvents;
};
