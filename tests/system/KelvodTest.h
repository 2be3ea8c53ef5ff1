#pragma once

#include <binder/IBinder.h>
#include <binder/Parcel.h>
#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <vector>

#include "LogFile.h"
#include "client/CallTypes.h"
#include "service/ServiceCodes.h"
#include "sim/process/PhoneProcess.h"
#include "sim/tree/DeviceTree.h"
#include "support/BinderWorld.h"

/** A request to the daemon that holds its token already. */
struct KelvodRequest : android::Parcel {
    KelvodRequest();
};
/** The daemon's service; it must be there. */
android::sp<android::IBinder> kelvodService();
/** Calls the daemon with these arguments; its status. */
android::status_t callKelvod(uint32_t code, const std::vector<client::Argument>& arguments = {});

/**
 * A role, its argument being a number: registers that many listeners with the daemon and sends
 * "ready". Texts to it:
 * - "heard": what each listener was told so far, once for all if all agree ("status 3,broadcast 3
 *   40000"), else "they differ";
 * - "until TEXT": answers "seen" when all listeners have been told that.
 * - "forget": answers "forgotten"; what was told until then counts no more.
 * - "stick": answers "sticks"; the listener that is called next never returns, and sends "stuck".
 */
inline constexpr char kListenRole[] = "listen";

/** What COMPONENT_HEAT_TEST is told. */
inline constexpr int32_t kStartHeat = 1;
inline constexpr int32_t kStopHeat = 2;
/** Members of "shell_temp_fitting_model" for heat monitoring. */
inline constexpr char kHeatSources[] =
        ",'heatsource_detection':{'heatsource_model':{'device_name':['cpu','display'],"
        "'coefficient':[1,1]}}";

/**
 * The text of a configuration file with one model and 21 levels a degree apart, from `hold` and
 * `holdDown` °C on, and further members of "shell_temp_fitting_model", each after a comma.
 */
std::string kelvodConfig(int32_t hold, int32_t holdDown, const std::string& members = "");

/** A phone that has the daemon talk: a zone "skin" of 40 °C, the node, and what enables it. */
void buildSmallPhone(sim::DeviceTree& tree);

/** The daemon as a process on a small phone: a zone of 40 °C, one model, 21 levels from 30 °C. */
class KelvodTest : public testing::Test {
  protected:
    KelvodTest();

    /**
     * The configuration with rising thresholds from `hold` °C on, falling ones a degree below, and
     * these members of kelvodConfig().
     */
    void setConfig(int32_t hold, const std::string& members = "");
    void startKelvod();
    /** Waits until the daemon's log holds the text `count` times; false at the limit. */
    bool logs(const std::string& text, size_t count = 1) const { return mLog.holds(text, count); }
    size_t countInLog(const std::string& text) const { return mLog.count(text); }
    bool isAlive() { return !mKelvod->ending(); }
    /** How it ends ("status 255"), which is waited for; "alive" at the limit. */
    std::string awaitEnding() const;
    pid_t pid() const { return mKelvod->pid(); }
    /** A process with listeners, registered and brought up to date. */
    RoleProcess& startListeners(size_t count = 1, std::optional<uid_t> uid = std::nullopt);

    BinderWorld mWorld;
    sim::DeviceTree mTree;

  private:
    const LogFile mLog;
    std::optional<sim::PhoneProcess> mKelvod;
};
