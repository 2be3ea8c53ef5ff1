#pragma once

#include <string>

#include "core/KelvoMessage.h"

namespace kelvo {

/** What messages do to the engines; by default nothing. Called on the work thread only. */
class MessageActions {
  public:
    virtual ~MessageActions() = default;
    /** Performs a message that is not about scenes; an unknown code does nothing. */
    virtual void perform(const KelvoMessage& /*message*/) {}
    /** Switches the models; false when the scene has none and the present ones stay. */
    virtual bool switchScene(const std::string& /*scene*/) { return false; }
};

}  // namespace kelvo
