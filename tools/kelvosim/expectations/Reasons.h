#pragma once

#include <cstdint>
#include <string>

#include "recording/Recording.h"
#include "sim/scenario/Expectation.h"

/** Why a figure is what it is at a time, in one line, by what the engines decided with. */
std::string reasonOf(const sim::Condition& condition, int64_t timeMs, const Recording& recording);

/** The latest decision about the level. */
std::string levelReason(int64_t timeMs, const Recording& recording);
/** The latest question what heats the phone. */
std::string heatReason(int64_t timeMs, const Recording& recording);
/** Since when the estimate stands. */
std::string ambientReason(int64_t timeMs, const Recording& recording);

/** "43.212 °C" */
std::string celsiusText(int64_t milli);
/** "412.5 s" */
std::string secondsText(int64_t timeMs);
