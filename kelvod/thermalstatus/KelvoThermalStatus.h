#pragma once

#include <json/value.h>
#include <utils/Mutex.h>
#include <utils/Singleton.h>

#include <cstdint>
#include <vector>

#include "thermalstatus/BroadcastConfig.h"
#include "thermalstatus/LevelDecision.h"
#include "thermalstatus/ThermalLevels.h"
#include "thermalstatus/ThermalModelReader.h"

/**
 * The thermal-status engine: maps the shell temperature onto levels and status values and posts
 * what clients are told. Temperatures come in on the work thread; the rest is thread-safe.
 */
class KelvoThermalStatus : public android::Singleton<KelvoThermalStatus> {
  public:
    /** Once, at start-up: reads the model. */
    void init();
    /** Reads the model again, keeping the level; 0, or -1 with no thresholds left. */
    int reload();

    /** Takes the shell temperature (m°C). Work thread. */
    void onShellTempChanged(int temp);

    /** The status value of the level; -1 before the first decision and after a reload. */
    int32_t getThermalStatus() const;
    /** Copies the lists in force; 0. */
    int getConfig(std::vector<int>& tripTemps, std::vector<int>& tripDownTemps,
                  std::vector<int>& statusAreas) const;
    /** Takes over each list that has an entry for all levels; 1 when any has, else 0. */
    int dynamicConfig(std::vector<int>& tripTemps, std::vector<int>& tripDownTemps,
                      std::vector<int>& statusAreas);

  private:
    friend class android::Singleton<KelvoThermalStatus>;
    KelvoThermalStatus();

    // Configuration (KelvoThermalStatusConfig.cpp)
    void initBroadcast();
    int initConfig();
    int parseThermalStatusConf(const Json::Value& model) REQUIRES(mMutex);
    void printThermalStatusInfo() const REQUIRES(mMutex);
    static int getTripTemp(const kelvo::ThermalModelReading& reading, std::vector<int>& out);
    static int getTripDownTemp(const kelvo::ThermalModelReading& reading, std::vector<int>& out);
    static int getTSArea(const kelvo::ThermalModelReading& reading, std::vector<int>& out);
    static int getTSReprot(const kelvo::ThermalModelReading& reading, std::vector<int>& out);

    void callBackThermalStatus(int temp);
    void logDecision(const kelvo::LevelDecision& decision) const REQUIRES(mMutex);
    void apply(const kelvo::LevelDecision& decision) REQUIRES(mMutex);
    void switchMonitor(int temp);
    void broadcastThermalStatus(int temp);
    void reportHeatSource(int temp);

    // Constant after construction.
    bool mBroadcastEnabled = true;
    kelvo::BroadcastBand mBroadcastBand;

    // Guards the lists and the level; taken before the configuration's mutex and the looper's.
    mutable android::Mutex mMutex;
    kelvo::ThermalStatusModel mDefaultTS GUARDED_BY(mMutex);
    kelvo::LevelState mLevel GUARDED_BY(mMutex);

    // Work thread only.
    int32_t mLastShellTemp = -1;  // m°C
    bool mMonitorStarted = false;
    kelvo::HeatSourceReport mLastHeatSource;
};
