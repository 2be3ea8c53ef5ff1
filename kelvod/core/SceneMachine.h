#pragma once

#include <cstdint>
#include <string>

#include "config/ConfigNames.h"

namespace kelvo {

/**
 * Decides which scene the shell-temperature models are for: the current scene, the one to roll back
 * to, and the debounce of the flash light. Scenes are named as in kSceneNames.
 *
 * Not thread-safe; used on the work thread.
 */
class SceneMachine {
  public:
    /** What a decision does to the rest of the daemon. */
    class Actions {
      public:
        virtual ~Actions() = default;
        /** Switches the models; false when the scene has none and the present ones stay. */
        virtual bool switchScene(const std::string& scene) = 0;
        /** Asks for applyFlash() in `delayMs`. */
        virtual void scheduleFlash(int delayMs) = 0;
        /** Drops whatever scheduleFlash() has asked for. */
        virtual void cancelFlash() = 0;
    };

    /** `actions` must outlive the machine. */
    explicit SceneMachine(Actions* actions) : mActions(actions) {}

    /** A ShellFittingSceneOpCode, or any other number; the same one twice in a row is ignored. */
    void applyOpCode(int32_t opCode);
    /** The delay of a flash request is over. */
    void applyFlash();
    /** The screen was folded (0) or unfolded (any other value). */
    void applyFold(int32_t value);

    const std::string& currentScene() const { return mCurrentScene; }

  private:
    void restore();
    void load(const std::string& scene);
    void requestFlash();
    void requestFold(const std::string& scene);

    Actions* const mActions;
    std::string mCurrentScene = scene::kDefault;
    std::string mRollbackScene = scene::kDefault;
    int32_t mLastOpCode = 0;  // so a first "restore" counts as a repetition
};

}  // namespace kelvo
