// What switches the engine's cadence and its models.

#include "base/Log.h"
#include "base/TimeUtils.h"
#include "base/UpCall.h"
#include "shelltemp/AmbientRounds.h"
#include "shelltemp/ShellTempFitting.h"

using android::Mutex;
using kelvo::AmbientRounds;

int ShellTempFitting::updateScene(const std::string& scene, bool flag, int) {
    Mutex::Autolock lock(mMutex);
    if (scene == mScene.first && flag == mScene.second) {
        return -1;
    }
    mScene = {scene, flag};
    const int32_t interval = mLoop.enterScene(scene);
    const std::string today = kelvo::getLocalDay();
    if (today != mRecords.day()) {
        collectDataLocked();
        mRecords.start(today);
    }
    KLOGI("Update package %s interval %d", scene.c_str(), interval);
    return 0;
}

int ShellTempFitting::switchFittingScene(const std::string& scene) {
    Mutex::Autolock lock(mMutex);
    return mScenes.switchFittingScene(scene);
}

void ShellTempFitting::updateChargeStatus(bool charging) {
    mAmbientScenes.setCharging(charging);
    switchAmbientFittingScene();
}

void ShellTempFitting::updateFoldStatus(bool folded) {
    mAmbientScenes.setFolded(folded);
    switchAmbientFittingScene();
}

void ShellTempFitting::switchAmbientFittingScene() {
    if (!mAmbientScenes.switching()) {
        return;
    }
    AmbientRounds& rounds = kelvo::UpCall<AmbientRounds>::get();
    rounds.prepare();  // not under the main mutex, as in ambientRounds()
    Mutex::Autolock lock(mMutex);
    const std::string wanted = mAmbientScenes.wanted();
    if (mScenes.switchAmbientScene(wanted)) {
        rounds.switchFittingParameter(wanted);
        KLOGD("switch ambient fitting model to %s scene", wanted.c_str());
    }
}
