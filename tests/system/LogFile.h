#pragma once

#include <string>

/** The log of a running program. */
class LogFile {
  public:
    explicit LogFile(std::string path) : mPath(std::move(path)) {}

    const std::string& path() const { return mPath; }
    size_t count(const std::string& text) const;
    /** Waits until it holds the text `count` times; false at the limit. */
    bool holds(const std::string& text, size_t count = 1) const;

  private:
    const std::string mPath;
};
