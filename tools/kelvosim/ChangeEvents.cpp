#include "ChangeEvents.h"

#include "shelltemp/FittingPass.h"
#include "sim/virtual/VirtualTime.h"
#include "thermalstatus/LevelDecision.h"

void ChangeEvents::onFittingPass(const kelvo::FittingPass& pass) {
    if (mScene == pass.scene) {
        return;
    }
    const Json::Value before = mScene ? Json::Value(*mScene) : Json::Value();
    mScene = pass.scene;
    mListener(
            {sim::VirtualTime::now(), "scene_change", {{"scene", pass.scene}, {"before", before}}});
}

void ChangeEvents::onLevelDecision(const kelvo::LevelDecision& decision) {
    if (decision.changesLevel()) {
        mListener({sim::VirtualTime::now(),
                   "level_change",
                   {{"level", decision.newLevel},
                    {"before", decision.oldLevel},
                    {"status", decision.newStatus}}});
    }
}
