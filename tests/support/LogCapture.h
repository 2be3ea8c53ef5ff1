#pragma once

#include <android/log.h>

#include <optional>
#include <string>
#include <vector>

/** Captures the log lines of the process while it lives; one at a time. Thread-safe. */
class LogCapture {
  public:
    struct Line {
        int priority;  // ANDROID_LOG_ERROR, ANDROID_LOG_INFO or ANDROID_LOG_DEBUG
        std::string text;
    };

    LogCapture();
    ~LogCapture();
    LogCapture(const LogCapture&) = delete;
    LogCapture& operator=(const LogCapture&) = delete;

    std::vector<Line> lines() const;
    /** How many lines have exactly this text, or this text at this priority. */
    size_t count(const std::string& text) const;
    size_t count(int priority, const std::string& text) const;
    /** How many lines begin with this text. */
    size_t countOf(const std::string& start) const;
    /** What follows this beginning in the last line that has it. */
    std::optional<std::string> lastAfter(const std::string& start) const;
    /** How many errors have exactly this text. */
    size_t errors(const std::string& text) const { return count(ANDROID_LOG_ERROR, text); }
    bool has(const std::string& text) const { return count(text) > 0; }
    void clear();
};
