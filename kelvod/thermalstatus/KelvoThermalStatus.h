#pragma once

#include <json/value.h>
#include <utils/Mutex.h>
#include <utils/Singleton.h>

#include <cstdint>
#include <vector>

#include "thermalstatus/LevelDecision.h"
#include "thermalstatus/ThermalLevels.h"

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
    void readBroadcastConfig();
    int initConfig();
    int parseThermalStatusConf(const Json::Value& model) REQUIRES(mMutex);
    void printThermalStatusInfo() const REQUIRES(mMutex);
    static int getTripTemp(const Json::Value& model, std::vector<int>& out);
    static int getTripDownTemp(const Json::Value& model, std::vector<int>& out);
    static int getTSArea(const Json::Value& model, std::vector<int>& out);
    static int getTSReprot(const Json::Value& model, std::vector<int>& out);

    void callBackThermalStatus(int temp);
    void updateLevel(kelvo::LevelDecision& decision) REQUIRES(mMutex);
    bool keepsLevel(kelvo::LevelDecision& decision) const REQUIRES(mMutex);
    int32_t decideLevel(kelvo::LevelDecision& decision) const REQUIRES(mMutex);
    void setLevel(int32_t level) REQUIRES(mMutex);
    void switchMonitor(int temp);
    void broadcastThermalStatus(int temp);
    void reportHeatSource(int temp);

    // Constant after construction.
    int32_t mBroadcastLow = 30;   // °C
    int32_t mBroadcastHigh = 55;  // °C
    bool mBroadcastEnabled = true;

    // Guards the lists and the level; taken before the looper's lock only.
    mutable android::Mutex mMutex;
    kelvo::ThermalStatusModel mDefaultTS GUARDED_BY(mMutex);
    int32_t mThermalStatus GUARDED_BY(mMutex) = -1;
    int32_t mLastThermalLevel GUARDED_BY(mMutex) = -1;
    int32_t mLastLevelTemp GUARDED_BY(mMutex) = -1;  // °C, at the last decision

    // Work thread only.
    int32_t mLastShellTemp = -1;  // m°C
    bool mMonitorStarted = false;
    kelvo::HeatSourceReport mLastHeatSource;
};
