#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <memory>
#include <string>
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

    using Lines = std::vector<std::string>;

    /** Adds thermal_zoneN with its type and temperature (m°C). */
    void addZone(std::string type, std::optional<int32_t> temp);
    /** The main configuration file; "temp_threshold_down" is put into it. Single quotes serve as
     * double ones. */
    void setConfig(std::string json);
    void startPhone();
    /** The same with just these scenes, each as scene() gives it. */
    void setScenes(const std::string& scenes);
    /** Starts with a zone that cannot be read, so that the shell has no temperature; with further
     * members of the configuration, each after a comma. */
    void startWithoutTemp(const std::string& members = "");
    /** Builds the tree but leaves the daemon's engines alone. */
    void buildPhone();

    sim::VirtualPhone& phone() { return *mPhone; }
    /** Runs up to `seconds` after t = 0. */
    void runUntil(double seconds);
    void setTemp(int32_t zone, std::optional<int32_t> temp);
    /** A transaction of the framework's, whose answer nobody reads. */
    void call(uint32_t code, const sim::Argument& argument);
    void setService(const std::string& name, bool up);

    /** Texts written to "/proc/shell-temp" since the last call. */
    Lines takeWrites();
    /** All other events since the last call, or those of this name: lines of JSON, single quotes.
     */
    Lines takeEvents(const std::string& name = "");
    /** Those of them that went to listeners, as "kind number…": "status 3", "broadcast 3 36000". */
    Lines takeCalls();

    LogCapture log;
    sim::Scenario scenario;

  private:
    std::unique_ptr<sim::VirtualPhone> mPhone;
    std::vector<std::string> mWrites;
    std::vector<sim::Event> mEvents;
};
