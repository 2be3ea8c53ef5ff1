#pragma once

#include <iosfwd>
#include <string>
#include <vector>

#include "comparison/ModelError.h"
#include "recording/Recording.h"

/** What a replay came to, as far as two of them are compared. */
struct RunOutcome {
    Series shell{"shell", "m°C"};
    std::vector<Series> models;  // outputs as published, m°C; each name once
    Series ambient{"estimate", "m°C"};
    std::vector<Series> heat;  // m°C, by component
    Series level{"level", ""};
    Series status{"status", ""};
    Band scene{"scene"};
    Band heatSource{"heat source"};
    std::vector<ModelError> errors;
    std::vector<Notification> notifications;  // ascending by time
};

RunOutcome outcomeOf(const Recording& recording);

/** One process hands an outcome to another as JSON. */
void writeOutcome(std::ostream& out, const RunOutcome& outcome);
/** Throws std::runtime_error for what writeOutcome() has not written. */
RunOutcome readOutcome(const std::string& file);
