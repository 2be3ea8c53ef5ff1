#pragma once

#include <json/value.h>

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "shelltemp/FittingModel.h"
#include "shelltemp/ZoneTable.h"

namespace kelvo {

/**
 * The model sets of the configuration by scene: which of them gives the shell temperature, which
 * the ambient one, and which backup sets are still good. Each set is stored once and chosen by
 * name, so that no choice outlives what it stands for. Not thread-safe; the caller serialises.
 */
class FittingScenes {
  public:
    /**
     * Stores each scene of `root` that has models; the zones of `table` are those that were found,
     * `zoneCount` their number. Scenes stored before and not in `root` keep their models.
     */
    void getFittingModels(const Json::Value& root, const ZoneTable& table, int32_t zoneCount);
    bool empty() const { return mSets.empty(); }
    bool has(const std::string& scene) const { return mSets.count(scene) > 0; }
    /** The set of a scene, which it says in the log; null without one. */
    const TempFittingModel* getFittingScene(const std::string& scene) const;
    const ModelNames& modelNames() const { return mModelNames; }
    void dump() const;

    /**
     * "default", or the first backup set when that has no models, and an ambient set: that of
     * charging, which must be there then, or the usual one. Once, after the first loading.
     */
    void chooseStartingModels(bool ambientCharge);
    /** Takes a scene that has models for the shell temperature. 1 switched, 0 kept. */
    int switchFittingScene(const std::string& scene);
    /** The same for the ambient temperature; whether it switched. */
    bool switchAmbientScene(const std::string& scene);

    /** The set that gives the shell temperature. */
    const TempFittingModel& current() const;
    FittingModelKind currentKind() const;
    /** The set that gives the ambient temperature; null without one. */
    const TempFittingModel* ambient() const;

    /** Backup sets that are still good; of the loading before when the last one found none. */
    int32_t backupCount() const { return mBackupCount; }
    /**
     * Gives up the backup sets whose first model uses the last one of `badZones` and takes the
     * first good one, whether or not the current set uses that zone. 0, or -1 when none is left.
     */
    int updateTempFittingModel(const std::vector<int32_t>& badZones);

    /** Before loading anew: empties the list of backup sets. */
    void resetBackups() { mBackups.clear(); }
    /** After it: a backup set that the fallback had taken and that is gone gives way to "default".
     */
    void restoreBackup();

  private:
    struct Backup {
        std::string scene;
        bool enabled = true;  // false once it is given up for a failed zone
    };

    void storeScene(TempFittingModel set);
    const TempFittingModel* find(const std::string& scene) const;
    void useBackup(const Backup& backup);
    int updateBackupFmList(const std::vector<int32_t>& badZones);
    bool firstModelUses(const std::string& scene, int32_t zone) const;

    std::map<std::string, TempFittingModel> mSets;  // by scene; entries only ever come or change
    std::vector<Backup> mBackups;                   // in the order of their names
    int32_t mBackupCount = 0;
    ModelNames mModelNames;
    std::string mCurrent;           // scene
    bool mCurrentIsBackup = false;  // taken from mBackups, not switched to
    std::string mAmbient;           // scene; empty without one
};

}  // namespace kelvo
