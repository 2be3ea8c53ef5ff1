#pragma once

#include <json/value.h>
#include <utils/Mutex.h>
#include <utils/Singleton.h>

#include <atomic>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "base/PeriodicLoop.h"
#include "shelltemp/AbnormalZones.h"
#include "shelltemp/FittingLimits.h"
#include "shelltemp/FittingModel.h"
#include "shelltemp/PassRecord.h"
#include "shelltemp/SpecifiedZones.h"
#include "shelltemp/TemperatureRecords.h"
#include "shelltemp/ThermalZone.h"
#include "shelltemp/TsensorCollector.h"
#include "shelltemp/ZoneTable.h"
#include "shelltemp/ZoneTemps.h"

namespace kelvo {
class AmbientRounds;
}

/**
 * The shell-temperature engine: computes the temperatures of the phone's shell from thermal zones
 * with the models of the current scene, guards them against implausible jumps, and writes them to
 * "/proc/shell-temp". Its thread "st-fitting" runs from construction on.
 *
 * Thread-safe; what belongs to the fitting thread says so. Lock order: the main mutex, then the
 * loop's mutex, the ambient estimator's or a leaf (specified zones, configuration, data collector,
 * a singleton's creation); the tsensors' mutex is taken without the main one.
 *
 * With an ambient model a cycle asks the charger HAL for the battery current, the main mutex held:
 * a HAL that hangs stops the cycles, and whoever changes or asks for scenes or models, until it
 * answers or dies. Clients still get status, temperature and ambient temperature, which need no
 * lock of this engine.
 */
class ShellTempFitting : public android::Singleton<ShellTempFitting>,
                         private kelvo::PeriodicLoop::Client {
  public:
    /** Once, at start-up: enters the first scene text and the project's special handling. */
    void init();
    /** Once, at start-up: tells the kernel's thermal governor which zone is its own. */
    void initIPA();
    /** Once, at start-up: says whether this project charges wirelessly. */
    void openPrjUniqueFeature();
    /** Reads the configuration again; the result of initTsensorConfig(). Work thread. */
    int reload();

    /**
     * Takes up a package name, "SCREEN:ON", "SCREEN:OFF" or another text: sets the cadence and
     * wakes the loop. 0, or -1 when text and flag are those of the last call.
     */
    int updateScene(const std::string& scene, bool flag, int);
    /** Switches the models to a scene from the next cycle on. 1 switched, 0 kept. */
    int switchFittingScene(const std::string& scene);
    /** Switch the ambient models; work thread and binder threads. */
    void updateChargeStatus(bool charging);
    void updateFoldStatus(bool folded);

    /** Model index → temperature (m°C) of the latest cycle, possibly half limited. */
    kelvo::FittingTemps getFittingTemps() const;
    /** Kind of the current set's first model with zones: 1 several, 2 battery, 3 other, -1 none. */
    int32_t getCurrentFittingModelType() const;
    /** Temperatures (m°C) of the zones that clients may ask for. 0, or -1. */
    int getSpecifiedZoneTemps(std::vector<int>& temps);
    /** Ambient scenes with models, in a fixed order; a reload lists them again. */
    std::vector<std::string> getAmbientModelList() const;
    /** Whether there is no "ambient_charge" scene: such a project never switches ambient sets. */
    bool isOldAmbientProject() const;
    /** 1 when the project is in "old_safety_project", 2 when it is not, -1 without that list. */
    int32_t isOldSafetyProject() const;

    /** Reads a zone (m°C). 0 good, 1 unreadable (`temp` left alone), 3 out of range. */
    int32_t getThermalTemp(const kelvo::ThermalZone& zone, int& temp) const;
    /** The zones that the member "thermal_zone_type" of `info` lists, up to one that is unknown. */
    kelvo::ZoneList resolveZones(const Json::Value& info);

    // The steps of a cycle, in their order; fitting thread only.

    /** Reads the zones and evaluates the models. 0, or -1 when a zone cannot be read. */
    int getAndfitTemp();
    /** Caps and smooths the fitted values; 0. */
    int checkShellTemp();
    /** Writes each value whose tenth of a degree changed. 0, or the failed write's result. */
    int setShellTemp();
    /** Publishes the values by name. */
    void updateGlobalShellTemp();

  private:
    friend class android::Singleton<ShellTempFitting>;
    ShellTempFitting();

    using FittingSet = kelvo::TempFittingModel;

    static constexpr int32_t kDefaultInterval = 5;  // s

    // Configuration (ShellTempFittingConfig.cpp)
    int initConfig();
    int initConfigLocked() REQUIRES(mMutex);
    int32_t initThermalZones() REQUIRES(mMutex);
    void getFittingModels(Json::Value& root, int zoneCount) REQUIRES(mMutex);
    void storeScene(FittingSet set) REQUIRES(mMutex);
    void dumpModels() const REQUIRES(mMutex);
    int initSpecifiedConfig();
    int initTsensorConfig();
    FittingSet* getFittingScene(const std::string& scene);
    void chooseStartingModels();
    void readInterval();

    // Loop and cycle (ShellTempFitting.cpp, ShellTempFittingCycle.cpp)
    void onThreadStart() override;
    bool runPass() override;
    bool onWoken(int32_t intervalSeconds) override;
    bool onTimeout() override;
    void onThreadEnd(kelvo::PeriodicLoop::End end, int error) override;
    void readTempForFirstTime();
    void fittingStep();
    bool fallbackWanted() const;
    void collectHourly();
    int getAndCheckTemp(const kelvo::ThermalZone& zone, int& temp) REQUIRES(mMutex);
    int recordAbnTZone(const kelvo::ThermalZone& zone, const int& temp, const int& state)
            REQUIRES(mMutex);
    int gatherTemps(const kelvo::FittingModel& model, std::vector<int32_t>& temps) REQUIRES(mMutex);
    int fitModel(const kelvo::FittingModel& model) REQUIRES(mMutex);
    void specialHandlingInnerTemp(int index) REQUIRES(mMutex);
    void capToReference() REQUIRES(mMutex);
    bool screenJustTurnedOn() REQUIRES(mMutex);
    void limitJumps() REQUIRES(mMutex);
    void recordTempData(const kelvo::ZoneTemps& zoneTemps) REQUIRES(mMutex);
    void collectDataLocked() REQUIRES(mMutex);
    int getTsensorTemps();
    void getTsensorDataCollect();

    // Ambient temperature (ShellTempFittingAmbient.cpp)
    /**
     * Null without an ambient set. Asked for without the main mutex: the estimator's construction
     * asks for this engine in its turn.
     */
    kelvo::AmbientRounds* ambientRounds();
    void fittingAmbientTemp(const kelvo::ZoneTemps& zoneTemps, kelvo::AmbientRounds* rounds)
            REQUIRES(mMutex);
    int fitAmbientModel(const kelvo::FittingModel& model, const kelvo::ZoneTemps& zoneTemps,
                        std::optional<int32_t>& value) REQUIRES(mMutex);
    int32_t ambientShellTemp(const kelvo::FittingModel& model, int32_t own) const REQUIRES(mMutex);
    void switchAmbientFittingScene();

    // Scenes (ShellTempFittingScenes.cpp)
    void applyCadence(const std::string& scene, int32_t* interval);
    int updateTempFittingModel();
    int updateBackupFmList() REQUIRES(mMutex);
    std::string resetConfig() REQUIRES(mMutex);
    void restoreBackupScene(const std::string& scene) REQUIRES(mMutex);

    const std::vector<std::string> mAmbientModelNames = {"ambient", "ambient_charge",
                                                         "ambient_fold", "ambient_fold_charge"};
    int32_t mConfiguredInterval = 0;  // s, constant after construction

    std::atomic<bool> mRunning = true;
    std::atomic<bool> mCharging = false;
    std::atomic<bool> mFolded = false;
    kelvo::SpecifiedZones mSpecifiedZones;
    kelvo::TsensorCollector mTsensors;

    // Only whether there is one counts. Atomic, not guarded: the ambient estimator asks for it
    // while the fitting thread, which makes the estimator, holds the main mutex.
    std::atomic<const FittingSet*> mAmbientChargeModel = nullptr;
    mutable android::Mutex mNamesMutex;  // for the same reason; a leaf
    std::vector<std::string> mAvailableAmbientModels GUARDED_BY(mNamesMutex);

    mutable android::Mutex mMutex;  // the main mutex: guards the members down to the loop
    kelvo::ZoneTable mZoneTable GUARDED_BY(mMutex);
    kelvo::AbnormalZones mAbnormalZones GUARDED_BY(mMutex);
    std::map<std::string, FittingSet> mSceneModels GUARDED_BY(mMutex);
    // The pointers point into mSceneModels, or into mBackupFittingModels.
    FittingSet* mDefaultFittingModel GUARDED_BY(mMutex) = nullptr;
    FittingSet* mCurrentFittingModel GUARDED_BY(mMutex) = nullptr;
    FittingSet* mAmbientFittingModel GUARDED_BY(mMutex) = nullptr;
    std::vector<FittingSet> mBackupFittingModels GUARDED_BY(mMutex);
    int32_t mBackupCount GUARDED_BY(mMutex) = 0;  // those still enabled
    std::map<int32_t, std::string> mModelNameByIndex GUARDED_BY(mMutex);
    kelvo::ZoneTemps mZoneTemps GUARDED_BY(mMutex);  // of the latest cycle
    kelvo::FittingTemps mFittingTemps GUARDED_BY(mMutex);
    kelvo::FittingTemps mLastFittingTemps GUARDED_BY(mMutex);
    int32_t mFittingTime GUARDED_BY(mMutex) = 0;      // monotonic, s
    int32_t mLastFittingTime GUARDED_BY(mMutex) = 0;  // monotonic, s
    std::map<int32_t, kelvo::DeltaHistory> mDeltaHistory GUARDED_BY(mMutex);
    kelvo::TemperatureRecords mRecords GUARDED_BY(mMutex);
    std::string mRecordDay GUARDED_BY(mMutex);
    std::string mRecordStart GUARDED_BY(mMutex);  // time stamp
    int64_t mStartTime GUARDED_BY(mMutex) = 0;    // monotonic, ns; of the records
    std::string mCurrentPackage GUARDED_BY(mMutex);
    bool mCurrentPackageFlag GUARDED_BY(mMutex) = false;
    std::string mProjectName GUARDED_BY(mMutex);
    bool mInnerSpecialHandling GUARDED_BY(mMutex) = false;

    kelvo::PeriodicLoop mLoop;  // its mutex guards the interval and mScreenOnTime
    int32_t mScreenOnTime GUARDED_BY(mLoop.mutex()) = -1;  // monotonic, s

    // Fitting thread only.
    bool mPrimed = false;
    std::map<std::string, std::vector<int32_t>> mZoneTempsByModel;  // m°C
    kelvo::FittingTemps mWrittenTemps;
    kelvo::PassRecord mPassRecord;
};
