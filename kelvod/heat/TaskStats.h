#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

namespace kelvo {

inline constexpr size_t kThreadNameSize = 16;  // with its end

/** One thread's figures. */
struct PidTidPower {
    int32_t pid = 0;
    int32_t tid = 0;
    int32_t power = 0;            // energy over a sampling period, as the service counts it
    int32_t keepTime = 0;         // s among the top threads
    float powerToThermal = 0.0F;  // its process's share of the shell temperature
    char name[kThreadNameSize] = {};
};

/**
 * Reads task statistics: a line for a thread, with process id, thread id, power and name separated
 * by white space. At most 4095 characters count, names are cut to 15, and the first line that lacks
 * a field (an empty one too) ends the reading: `complete` then becomes false. Numbers that do not
 * fit are held at the ends of the range. Pure.
 */
std::vector<PidTidPower> parseTaskStats(std::string_view text, bool* complete);

}  // namespace kelvo
