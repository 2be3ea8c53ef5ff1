#pragma once

#include <string>

#include "core/MessageActions.h"

namespace kelvo {

/** What the daemon's engines and clients make of each message. Work thread only. */
class EngineMessages : public MessageActions {
  public:
    void perform(const KelvoMessage& message) override;
    bool switchScene(const std::string& scene) override;
};

}  // namespace kelvo
