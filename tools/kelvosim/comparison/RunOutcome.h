#pragma once

#include <iosfwd>
#include <string>
#include <vector>

#include "recording/Recording.h"

/** What a replay came to, as far as two of them are compared. */
struct RunOutcome {
    Series shell{"shell", "m°C"};
    Series level{"level", ""};
    Series status{"status", ""};
    std::vector<Notification> notifications;  // ascending by time
};

RunOutcome outcomeOf(const Recording& recording);

/** One process hands an outcome to another as JSON. */
void writeOutcome(std::ostream& out, const RunOutcome& outcome);
/** Throws std::runtime_error for what writeOutcome() has not written. */
RunOutcome readOutcome(const std::string& file);
