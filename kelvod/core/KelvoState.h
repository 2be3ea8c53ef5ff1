#pragma once

#include <json/value.h>
#include <utils/Mutex.h>
#include <utils/Singleton.h>

#include <atomic>
#include <cstdint>
#include <limits>
#include <map>
#include <string>
#include <vector>

#include "core/BigDataConfig.h"
#include "core/DailyTempRecord.h"
#include "core/PackageTimes.h"
#include "core/ThrottlingThresholds.h"

/**
 * The daemon's view of the device: shell and board temperature, display, foreground package,
 * charging time, and the daily statistics. Temperatures are m°C. Thread-safe.
 *
 * Lock order: the state mutex, then the big-data mutex; after either the thermal-status engine's,
 * the data collector's, the configuration's and the looper's.
 */
class KelvoState : public android::Singleton<KelvoState> {
  public:
    /** The shell temperature (m°C); 0 before the first one. */
    int32_t getTemp() const { return mShellTemp; }
    /** The shell temperature in °C. */
    float getTempCelsius() const { return static_cast<float>(mShellTemp * 0.001); }
    /** 0: the thresholds are read, but nothing in the daemon raises the level. */
    int32_t getThermalThrottlingLevel() const { return mThrottlingLevel; }

    /**
     * Takes the outputs of a fitting cycle and the zone temperatures that fed each, both by the
     * output's name. Fitting thread.
     */
    void updateShellTemps(const std::map<std::string, int32_t>& outputs,
                          const std::map<std::string, std::vector<int32_t>>& zoneTemps);
    /** Takes the screen status of a client; 0 is off. */
    void updateDisplayState(int status);
    /** Takes the name of the package in the foreground. */
    void updateState(const std::string& package);
    /** The phone is charging now. */
    void setChargingTime();
    /** Reads the big-data settings again. Work thread. */
    void reload();

    /** The package in the foreground, or "SCREEN.ON" or "SCREEN.OFF"; empty before the first. */
    std::string getCurrentPkgName() const;
    /** Whole seconds the package was in the foreground; -1 when it never was. */
    int64_t getPkgRemainTime(const std::string& package) const;
    /** Hands the packages' charges to the data collector, for the day `key`. */
    void getPkgBatteryBigDataRecord(const std::string& key, bool clear);
    /** The statistics of the present day. */
    Json::Value getTempDataCollection() const;
    /** Hands them to the data collector. */
    void updateTempDataCollection();

  private:
    friend class android::Singleton<KelvoState>;
    KelvoState();

    void initThrottlingThresholds();
    bool isChange(int32_t maximum) const REQUIRES(mMutex);
    void takeShellTemp(bool anyOutput, int32_t maximum) REQUIRES(mMutex);
    void logDetails(int32_t maximum, const std::vector<int32_t>& zoneTemps) REQUIRES(mMutex);
    void notifyTempChanged() const;
    void notifyThermalState() const;

    // Big data (KelvoStateBigData.cpp)
    void initBigDataSetting();
    void collectTempData();
    void startNewDay(const std::string& day) REQUIRES(mBigDataMutex);
    void restartRecord(const std::string& day) REQUIRES(mBigDataMutex);
    void getTempDataCollectionLocked(Json::Value& out) const REQUIRES(mBigDataMutex);
    void updateTempDataCollectionLocked() REQUIRES(mBigDataMutex);
    void updateCollingDeviceDataCollection(const std::string& day) const;

    static constexpr int32_t kDefaultBoardTemp = 40000;  // m°C

    // Constant after construction; nothing applies them.
    kelvo::ThrottlingThresholds mThrottlingThresholds;

    // Written under the state mutex, read by anyone.
    std::atomic<int32_t> mShellTemp = 0;
    std::atomic<int32_t> mBoardTemp = kDefaultBoardTemp;
    std::atomic<int32_t> mThrottlingLevel = 0;

    mutable android::Mutex mMutex ACQUIRED_BEFORE(mBigDataMutex);  // the state mutex
    int32_t mDisplayState GUARDED_BY(mMutex) = 1;                  // recorded; nothing reads it
    int32_t mLastLoggedTemp GUARDED_BY(mMutex) = -1;
    std::string mHottestOutput GUARDED_BY(mMutex);
    int64_t mChargingStart GUARDED_BY(mMutex) = 0;  // monotonic, ns; recorded, not read
    kelvo::PackageTimes mPackages GUARDED_BY(mMutex);

    mutable android::Mutex mBigDataMutex;
    bool mBigDataEnabled GUARDED_BY(mBigDataMutex) = false;
    int32_t mSamplePeriod GUARDED_BY(mBigDataMutex) = kelvo::kDefaultSamplePeriod;  // s
    int32_t mThermalOffThousandth GUARDED_BY(mBigDataMutex) = 0;
    bool mSampling GUARDED_BY(mBigDataMutex) = false;  // drawn once a day
    kelvo::DailyTempRecord mRecord GUARDED_BY(mBigDataMutex);
};
