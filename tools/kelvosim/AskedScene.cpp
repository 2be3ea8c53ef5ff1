#include "AskedScene.h"

#include "config/ConfigText.h"
#include "core/Scene.h"
#include "service/ServiceCodes.h"

namespace {

using OpCode = kelvo::ShellFittingSceneOpCode;

/** The scenes of the configuration that the daemon takes, platform and project left aside. */
std::set<std::string> readScenes(const sim::ConfigFiles& config) {
    std::set<std::string> names;
    Json::Value root;
    if (kelvo::parseConfigText(config.data.value_or(config.main.value_or("")), root) != 0 ||
        !root.isObject() || !root["shell_temp_fitting_model"].isObject()) {
        return names;
    }
    const Json::Value& scenes = root["shell_temp_fitting_model"];
    for (const std::string& name : scenes.getMemberNames()) {
        if (scenes[name].isObject() && !scenes[name]["temp_model"].empty()) {
            names.insert(name);
        }
    }
    return names;
}

/** What the message of this call asks for; none when it is about something else. */
std::optional<OpCode> opCodeOf(const sim::Transact& call) {
    const auto* number = call.args.empty() ? nullptr : std::get_if<int32_t>(&call.args.front());
    const bool isOne = number != nullptr && *number == 1;
    switch (call.code) {
        case kelvo::SET_LIGHT_LAMP_STATUS:
            return isOne ? OpCode::FLASH_ON : OpCode::RESTORE;
        case kelvo::SET_SCREEN_FOLD_STATUS:
            return isOne ? OpCode::RESTORE : OpCode::SCREEN_FOLD;
        default:
            return std::nullopt;
    }
}

}  // namespace

AskedScene::AskedScene(const sim::Scenario& scenario) : mScenes(readScenes(scenario.config)) {
    restart();
}

void AskedScene::restart() {
    mMachine.emplace(static_cast<kelvo::SceneMachine::Actions*>(this));
    mFlash.reset();
}

void AskedScene::tell(const sim::Deed& deed, Time now) {
    runTo(now);
    std::optional<OpCode> opCode;
    if (const auto* call = std::get_if<sim::Transact>(&deed)) {
        opCode = opCodeOf(*call);
    } else if (const auto* health = std::get_if<sim::Health>(&deed);
               health != nullptr && health->wireless != mWireless) {
        mWireless = health->wireless;
        opCode = mWireless ? OpCode::WIRELESS_CHARGE : OpCode::RESTORE;
    }
    if (opCode) {
        mMachine->applyOpCode(static_cast<int32_t>(*opCode));
    }
}

std::string AskedScene::current(Time now) {
    runTo(now);
    return mMachine->currentScene();
}

void AskedScene::scheduleFlash(int delayMs) {
    mFlash = mNow + std::chrono::milliseconds(delayMs);
}

void AskedScene::runTo(Time now) {
    mNow = now;
    if (mFlash && *mFlash <= now) {
        mFlash.reset();
        mMachine->applyFlash();
    }
}
