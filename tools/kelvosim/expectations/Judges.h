#pragma once

#include "expectations/Verdict.h"

// The two kinds of expectations; what they return has neither place nor texts of the expectation.

/** Of figures that stand for a time. */
Verdict judgeState(const sim::Expectation& expectation, const Recording& recording);

/** Of calls to listeners. */
Verdict judgeCall(const sim::Expectation& expectation, const Recording& recording);
