#include "core/SceneMachine.h"

#include "base/Log.h"
#include "core/Scene.h"

namespace kelvo {

namespace {

constexpr int kFlashDelayMs = 5000;

}  // namespace

void SceneMachine::applyOpCode(int32_t opCode) {
    std::string scene;
    if (const auto found = kSceneNames.find(opCode); found != kSceneNames.end()) {
        scene = found->second;
        KLOGE("Reload shell fitting model config %s, Rollback scene:%s, Current scene:%s",
              scene.c_str(), mRollbackScene.c_str(), mCurrentScene.c_str());
    } else {
        KLOGE("Can't find op scene, code:%d", opCode);  // "restore" has no name: it says so too
    }
    if (opCode == mLastOpCode) {
        KLOGE("Same operator code:%d", opCode);
        return;
    }
    mLastOpCode = opCode;
    switch (static_cast<ShellFittingSceneOpCode>(opCode)) {
        case ShellFittingSceneOpCode::RESTORE:
            return restore();
        case ShellFittingSceneOpCode::DEFAULT:
        case ShellFittingSceneOpCode::WIRELESS_CHARGE:
            return load(scene);
        case ShellFittingSceneOpCode::FLASH_ON:
            return requestFlash();
        case ShellFittingSceneOpCode::SCREEN_FOLD:
            return requestFold(scene);
    }
    KLOGE("invalid op code;%d", opCode);
}

void SceneMachine::restore() {
    mActions->cancelFlash();
    if (mActions->switchScene(mRollbackScene)) {
        mCurrentScene = mRollbackScene;
    }
}

void SceneMachine::load(const std::string& scene) {
    KLOGE("start load %s fitting model", scene.c_str());
    if (mActions->switchScene(scene)) {
        mRollbackScene = mCurrentScene;
        mCurrentScene = scene;
    }
}

void SceneMachine::requestFlash() {
    if (mCurrentScene == scene::kWirelessCharge) {
        KLOGE("current scene is wireless charge, ignore flash scene");
        return;
    }
    mActions->scheduleFlash(kFlashDelayMs);
    KLOGD("sendThrottlingDelayMessage");
}

void SceneMachine::requestFold(const std::string& scene) {
    if (mCurrentScene == scene::kFlashOn) {
        KLOGE("current scene is flashon, ignore screen fold scene");
        return;
    }
    load(scene);
}

void SceneMachine::applyFlash() {
    KLOGE("load light lamp fitting model triggered, current scene:%s", mCurrentScene.c_str());
    if (mActions->switchScene(scene::kFlashOn) && mCurrentScene != scene::kFlashOn) {
        mRollbackScene = mCurrentScene;
    }
    // Also after a failed switch: a fold must be held back for as long as the lamp is on.
    mCurrentScene = scene::kFlashOn;
}

void SceneMachine::applyFold(int32_t value) {
    KLOGD("switch screen fold fitting model Triggered");
    const std::string target = value == 0 ? scene::kScreenFold : scene::kDefault;
    mRollbackScene = target;
    if (mCurrentScene != scene::kFlashOn) {
        mActions->switchScene(target);
        mCurrentScene = target;  // whether or not the models could be switched
    }
}

}  // namespace kelvo
