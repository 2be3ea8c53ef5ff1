#include "support/LogCapture.h"

#include <algorithm>
#include <mutex>

namespace {

std::mutex sMutex;  // guards sLines
std::vector<LogCapture::Line> sLines;

void capture(const __android_logger_data* data, const char* message) {
    std::lock_guard lock(sMutex);
    sLines.push_back({data->priority, message});
}

}  // namespace

LogCapture::LogCapture() {
    clear();
    __android_log_set_logger(capture);
}

LogCapture::~LogCapture() {
    __android_log_set_logger(__android_log_stderr_logger);
}

std::vector<LogCapture::Line> LogCapture::lines() const {
    std::lock_guard lock(sMutex);
    return sLines;
}

size_t LogCapture::count(const std::string& text) const {
    std::lock_guard lock(sMutex);
    return static_cast<size_t>(std::ranges::count(sLines, text, &Line::text));
}

size_t LogCapture::count(int priority, const std::string& text) const {
    std::lock_guard lock(sMutex);
    return static_cast<size_t>(std::ranges::count_if(sLines, [&](const Line& line) {
        return line.priority == priority && line.text == text;
    }));
}

size_t LogCapture::countOf(const std::string& start) const {
    std::lock_guard lock(sMutex);
    return static_cast<size_t>(std::ranges::count_if(
            sLines, [&](const Line& line) { return line.text.starts_with(start); }));
}

std::optional<std::string> LogCapture::lastAfter(const std::string& start) const {
    std::optional<std::string> rest;
    for (const Line& line : lines()) {
        rest = line.text.starts_with(start) ? line.text.substr(start.size()) : rest;
    }
    return rest;
}

void LogCapture::clear() {
    std::lock_guard lock(sMutex);
    sLines.clear();
}
