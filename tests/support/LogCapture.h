#pragma once

#include <android/log.h>

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
    bool has(const std::string& text) const { return count(text) > 0; }
    void clear();
};
