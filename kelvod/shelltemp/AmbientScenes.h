#pragma once

#include <utils/Mutex.h>

#include <atomic>
#include <cstddef>
#include <string>
#include <vector>

#include "config/ConfigNames.h"

namespace kelvo {

/**
 * Which ambient scenes there are, and which one charging and folding want. Thread-safe without the
 * fitting engine's main mutex: the ambient estimator asks while it is made, which the fitting
 * thread waits for.
 */
class AmbientScenes {
  public:
    /** Whether there is a scene for charging, without which no other scene is ever taken. */
    void setSwitching(bool switching) { mSwitching = switching; }
    bool switching() const { return mSwitching; }

    /** Appends a scene that has models. */
    void add(const std::string& scene) {
        android::Mutex::Autolock lock(mMutex);
        mAvailable.push_back(scene);
    }
    std::vector<std::string> available() const {
        android::Mutex::Autolock lock(mMutex);
        return mAvailable;
    }

    void setCharging(bool charging) { mCharging = charging; }
    void setFolded(bool folded) { mFolded = folded; }
    bool charging() const { return mCharging; }
    /** The scene for the state of charging and folding, whether or not there is such a one. */
    const char* wanted() const {
        return scene::kAmbientScenes[(mCharging ? size_t{1} : 0) + (mFolded ? size_t{2} : 0)];
    }

  private:
    std::atomic<bool> mSwitching = false;
    std::atomic<bool> mCharging = false;
    std::atomic<bool> mFolded = false;
    mutable android::Mutex mMutex;  // guards the list; nothing is locked inside it
    std::vector<std::string> mAvailable GUARDED_BY(mMutex);
};

}  // namespace kelvo
