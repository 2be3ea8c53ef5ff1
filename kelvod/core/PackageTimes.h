#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>

namespace kelvo {

/**
 * How long each package was in the foreground and how much charge the battery gave meanwhile. Not
 * thread-safe; the caller serialises. Times are monotonic nanoseconds.
 */
class PackageTimes {
  public:
    /** Whether `package` is a name other than that of the package in the foreground. */
    bool isSwitch(const std::string& package) const {
        return !package.empty() && package != mForeground;
    }
    /** Puts `package`, for which isSwitch() holds, in the foreground. */
    void setForeground(const std::string& package, int64_t now);
    /** The package in the foreground; empty before the first. */
    const std::string& foreground() const { return mForeground; }
    /**
     * Credits the outgoing package with the time since the last record and, when the battery
     * current (mA) is known, with its charge (mAh); the foreground package is timed from now on.
     */
    void record(int64_t now, std::optional<int32_t> current);

    /** Whole seconds in the foreground; -1 for a package that never was. */
    int64_t secondsOf(const std::string& package) const;
    /** Charge by package name (mAh). */
    const std::map<std::string, int32_t>& charges() const { return mCharges; }
    /** As secondsOf(), but a package that never was gets an entry with 0. */
    int64_t countedSecondsOf(const std::string& package) { return mSeconds[package]; }
    void clear();

  private:
    std::string mForeground;
    std::string mTimed;       // the package that time is running for; at start the empty name
    int64_t mSwitchTime = 0;  // recorded; nothing reads it
    int64_t mLastRecord = 0;
    std::map<std::string, int64_t> mSeconds;
    std::map<std::string, int32_t> mCharges;
};

}  // namespace kelvo
