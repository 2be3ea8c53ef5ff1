#pragma once

#include <poll.h>

#include <chrono>

/** Looks until something holds that tells nobody; false at the limit. */
template <typename Condition>
bool await(Condition holds, std::chrono::milliseconds limit = std::chrono::seconds(30)) {
    constexpr int kLookMs = 5;
    const auto end = std::chrono::steady_clock::now() + limit;
    bool held = holds();
    while (!held && std::chrono::steady_clock::now() < end) {
        poll(nullptr, 0, kLookMs);
        held = holds();
    }
    return held;
}
