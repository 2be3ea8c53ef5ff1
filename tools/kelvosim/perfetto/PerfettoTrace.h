#pragma once

#include <ostream>

#include "recording/Recording.h"

/**
 * Writes a recording as a trace that ui.perfetto.dev opens: JSON in the trace-event format, time
 * in µs since t = 0, events ascending by time. Temperatures (°C) and heat are counters, a counter
 * keeps its value through a gap and shows the extremes of short stretches where it has more than
 * 20000 points; scenes, levels, status and monitoring are slices, each on a track
 * of its own; notifications, actions and what the daemon told others are instants.
 */
void writePerfettoTrace(std::ostream& stream, const Recording& recording);
