#pragma once

#include <utils/Timers.h>

/** What systemTime() answers in a program that links VirtualClock.cpp: ns, for every clock. */
inline nsecs_t gVirtualTime = 0;
