#pragma once

#include <string>

#include "sim/scenario/Scenario.h"

/** What an action of the timeline does, on one line of at most 100 bytes: "screen 0". */
std::string actionText(const sim::Deed& deed, const sim::Scenario& scenario);

/** A text on one line, cut where it would get longer than a mark can show. */
std::string oneLine(std::string text);
