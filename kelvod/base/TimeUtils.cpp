#include "base/TimeUtils.h"

#include <android-base/stringprintf.h>
#include <time.h>

#include "base/Log.h"
#include "base/Time.h"

namespace kelvo {

namespace {

bool toLocalTime(long seconds, struct tm* local) {
    // Reentrant; on a phone it also notices that the user has changed the time zone.
    const time_t time = seconds;
    return localtime_r(&time, local) != nullptr;
}

// The last convertible year does not fit in an int once the base is added.
long fullYear(const struct tm& local) {
    return local.tm_year + 1900L;
}

}  // namespace

std::string getTimestamp(long seconds) {
    struct tm local = {};
    if (!toLocalTime(seconds, &local)) {
        KLOGE("getTimestamp Fail");
        return {};
    }
    return android::base::StringPrintf("%04ld%02d%02d%02d%02d%02d", fullYear(local),
                                       local.tm_mon + 1, local.tm_mday, local.tm_hour, local.tm_min,
                                       local.tm_sec);
}

std::string getTimestamp() {
    return getTimestamp(wallClockSeconds());
}

std::string getLocalDay() {
    struct tm local = {};
    if (!toLocalTime(wallClockSeconds(), &local)) {
        KLOGE("getLocalDay: get localtime fail.");
        return {};
    }
    std::string day = android::base::StringPrintf("%04ld%02d%02d", fullYear(local),
                                                  local.tm_mon + 1, local.tm_mday);
    KLOGD("getLocalDay: %s", day.c_str());
    return day;
}

}  // namespace kelvo
