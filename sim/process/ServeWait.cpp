#include "sim/process/ServeWait.h"

#include <poll.h>

#include <algorithm>
#include <cstdio>
#include <deque>
#include <fstream>
#include <stdexcept>

namespace sim {

namespace {

constexpr size_t kShownLines = 5;
constexpr int kEndingMs = 1000;  // from a closed descriptor to the process's end
constexpr int kLookMs = 1;

std::string lastLines(const std::string& file) {
    std::ifstream stream(file);
    std::deque<std::string> lines;
    for (std::string line; std::getline(stream, line);) {
        if (!line.empty()) {
            lines.push_back(line);
        }
        if (lines.size() > kShownLines) {
            lines.pop_front();
        }
    }
    std::string text;
    for (const std::string& line : lines) {
        text += "\n    " + line;
    }
    return text;
}

}  // namespace

int ServeWait::leftMs() const {
    const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(
            kServeLimit - (Clock::now() - mStart));
    return static_cast<int>(std::max<int64_t>(left.count(), 0));
}

void ServeWait::refuse(const std::string& what, const PhoneProcess& process,
                       const std::string& log) const {
    // What closes its descriptors by ending has not ended yet.
    for (int waited = 0; !isOver() && !process.ending() && waited < kEndingMs; waited += kLookMs) {
        poll(nullptr, 0, kLookMs);
    }
    const auto ending = process.ending();
    char seconds[32];
    std::snprintf(seconds, sizeof(seconds), "%.1f s",
                  std::chrono::duration<double>(Clock::now() - mStart).count());
    const std::string lines = lastLines(log);
    throw std::runtime_error(what + " does not serve: " +
                             (ending ? "it ended with " + *ending + " after " : "no word in ") +
                             seconds + "; its log " + log +
                             (lines.empty() ? " says nothing" : " ends with:" + lines));
}

}  // namespace sim
