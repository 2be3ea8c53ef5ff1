#pragma once

#include "comparison/Comparison.h"

/** Fills in what became of each notification of either run: members "counts" and "notifications".
 */
void matchNotifications(const RunOutcome& own, const RunOutcome& other, Comparison& result);
