#pragma once

#include <json/value.h>
#include <utils/Mutex.h>
#include <utils/Singleton.h>

#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "shelltemp/AmbientModels.h"
#include "shelltemp/AmbientScenes.h"
#include "shelltemp/DailyRecords.h"
#include "shelltemp/FittingCycle.h"
#include "shelltemp/FittingLoop.h"
#include "shelltemp/FittingModel.h"
#include "shelltemp/FittingScenes.h"
#include "shelltemp/PassRecord.h"
#include "shelltemp/SpecifiedZones.h"
#include "shelltemp/ThermalZone.h"
#include "shelltemp/TsensorCollector.h"
#include "shelltemp/WrittenTemps.h"
#include "shelltemp/ZoneTable.h"

namespace kelvo {
class AmbientRounds;
}

/**
 * The shell-temperature engine: computes the temperatures of the phone's shell from thermal zones
 * with the models of the current scene, guards them against implausible jumps, and writes them to
 * "/proc/shell-temp". Its thread "st-fitting" runs from construction on.
 *
 * Thread-safe; what belongs to the fitting thread says so. Lock order: the main mutex, then one of
 * the loop's, the specified zones', the ambient scenes', the configuration's and the data
 * collector's, or the ambient estimator's with those that it takes in its turn, the configuration's
 * among them. Inside each a singleton may be created, but inside the main one never the estimator,
 * whose construction asks for this engine. The tsensors' mutex is taken without the main one.
 *
 * With an ambient model a cycle asks the charger HAL for the battery current, at its end and with
 * no mutex held: a HAL that hangs delays one cycle by a second and no caller.
 */
class ShellTempFitting : public android::Singleton<ShellTempFitting>,
                         private kelvo::FittingLoop::Steps {
  public:
    /** Once, at start-up: enters the first scene text and looks what the project needs. */
    void init();
    /** Once, at start-up: tells the kernel's thermal governor which zone is its own, if any is. */
    void initIPA();
    /** Once, at start-up: says whether this project charges wirelessly. */
    void openPrjUniqueFeature();
    /** Reads the configuration again. 0, or -1 without tsensors. Work thread. */
    int reload();

    /** A package name, "SCREEN:ON", "SCREEN:OFF" or another text sets the cadence and wakes the
     * loop. 0, or -1 when text and flag are those of the last call. */
    int updateScene(const std::string& scene, bool flag, int);
    /** Switches the models to a scene from the next cycle on. 1 switched, 0 kept. */
    int switchFittingScene(const std::string& scene);
    /** Switch the ambient models; work thread and binder threads. */
    void updateChargeStatus(bool charging);
    void updateFoldStatus(bool folded);

    /** Model index → temperature (m°C) of the latest cycle: as published, while it is made also
     * before limiting; of one that failed as fitted, up to the zone that could not be read. */
    kelvo::FittingTemps getFittingTemps() const;
    /** A FittingModelKind: what the current models stand on. */
    int32_t getCurrentFittingModelType() const;
    /** Temperatures (m°C) of the zones that clients may ask for. 0, or -1. */
    int getSpecifiedZoneTemps(std::vector<int>& temps);
    /** Ambient scenes with models, in a fixed order; a reload lists them again. */
    std::vector<std::string> getAmbientModelList() const;
    /** Whether the start found no "ambient_charge" scene: ambient sets then never switch. */
    bool isOldAmbientProject() const;
    /** 1 when the project is in "old_safety_project", 2 when it is not, -1 without that list. */
    int32_t isOldSafetyProject() const;
    /** Reads a zone (m°C). 0 good, 1 unreadable (`temp` left alone), 3 out of range. */
    int32_t getThermalTemp(const kelvo::ThermalZone& zone, int& temp) const;
    /** The zones that the member "thermal_zone_type" of `info` lists, up to one that is unknown. */
    kelvo::ZoneList resolveZones(const Json::Value& info);

    // The steps of a cycle, in their order; fitting thread only.
    int getAndfitTemp();   // reads and evaluates; -1 when a zone cannot be read, else 0
    int checkShellTemp();  // caps and limits the fitted values; 0
    int setShellTemp();    // writes what changed by a tenth of a degree; < 0 when a write failed
    void updateGlobalShellTemp();  // publishes the values by name

  private:
    friend class android::Singleton<ShellTempFitting>;
    ShellTempFitting();

    int initConfig() REQUIRES(mMutex);
    int initSpecifiedConfig();
    int initTsensorConfig();
    void chooseStartingModels();
    void waitUntilReady() override;
    void readTempForFirstTime() override;
    void fittingStep() override;
    void updateTempFittingModel();
    kelvo::AmbientRounds* ambientRounds();
    void fittingAmbientTemp(kelvo::AmbientRounds* rounds);
    std::optional<kelvo::AmbientValues> ambientValues();
    void switchAmbientFittingScene();
    void collectDataLocked() REQUIRES(mMutex);

    kelvo::AmbientScenes mAmbientScenes;
    kelvo::SpecifiedZones mSpecifiedZones;
    kelvo::TsensorCollector mTsensors;
    kelvo::FittingLoop mLoop;

    mutable android::Mutex mMutex;  // the main mutex
    kelvo::ZoneTable mZoneTable GUARDED_BY(mMutex);
    kelvo::FittingScenes mScenes GUARDED_BY(mMutex);
    kelvo::FittingCycle mCycle GUARDED_BY(mMutex);
    kelvo::DailyRecords mRecords GUARDED_BY(mMutex);
    std::pair<std::string, bool> mScene GUARDED_BY(mMutex);  // text and flag of updateScene()

    // Fitting thread only.
    kelvo::FittingCycle::ZoneTempsByModel mZoneTempsByModel;
    kelvo::WrittenTemps mWrittenTemps;
    kelvo::PassRecord mPassRecord;
};
