#include "LabTime.h"

#include <time.h>

#include <algorithm>
#include <charconv>
#include <cmath>

namespace {

// A record's own seconds stay far below what clocks have counted since 1970.
constexpr double kLeastEpoch = 1e8;  // s
constexpr double kLeastEpochMs = 1e11;
constexpr double kMostEpochMs = 1e14;

constexpr const char* kDates[] = {"%Y-%m-%dT", "%Y-%m-%d ", "%Y/%m/%d ", "%d.%m.%Y "};

/** Reads a time of day with its decimals into `seconds`; returns what follows, null if none. */
const char* readTimeOfDay(const char* text, double& seconds) {
    tm time = {};
    const char* rest = strptime(text, "%H:%M:%S", &time);
    if (rest == nullptr) {
        rest = strptime(text, "%H:%M", &time);
    }
    if (rest == nullptr) {
        return nullptr;
    }
    seconds = time.tm_hour * 3600 + time.tm_min * 60 + time.tm_sec;
    double weight = 0.1;
    if (*rest == '.' || *rest == ',') {
        for (++rest; *rest >= '0' && *rest <= '9'; ++rest, weight /= 10) {
            seconds += weight * (*rest - '0');
        }
    }
    return rest;
}

/** Seconds east of UTC from what follows a date's time; none for what says no zone. */
std::optional<double> readOffset(const char* text) {
    tm zone = {};
    if (*text == '\0') {
        return 0;
    }
    const char* const end = strptime(text, "%z", &zone);
    if (end == nullptr || *end != '\0') {
        return std::nullopt;
    }
    return static_cast<double>(zone.tm_gmtoff);
}

std::optional<LabTime> parseDate(const std::string& text) {
    for (const char* form : kDates) {
        tm date = {};
        const char* const clock = strptime(text.c_str(), form, &date);
        double ofDay = 0;
        const char* const rest = clock == nullptr ? nullptr : readTimeOfDay(clock, ofDay);
        const auto offset = rest == nullptr ? std::nullopt : readOffset(rest);
        if (offset) {
            return LabTime{TimeKind::EPOCH, static_cast<double>(timegm(&date)) + ofDay - *offset};
        }
    }
    return std::nullopt;
}

std::optional<LabTime> fromNumber(double number) {
    if (number < kLeastEpoch) {
        return LabTime{TimeKind::ELAPSED, number};
    }
    if (number < kLeastEpochMs) {
        return LabTime{TimeKind::EPOCH, number};
    }
    return number < kMostEpochMs ? std::optional(LabTime{TimeKind::EPOCH, number / 1000})
                                 : std::nullopt;
}

}  // namespace

std::optional<double> parseDecimal(std::string_view text) {
    std::string plain(text.starts_with('+') ? text.substr(1) : text);
    std::ranges::replace(plain, ',', '.');
    double value = 0;
    const char* const end = plain.data() + plain.size();
    const auto [at, error] = std::from_chars(plain.data(), end, value, std::chars_format::fixed);
    const bool isNumber = error == std::errc() && at == end && std::isfinite(value);
    return isNumber ? std::optional(value) : std::nullopt;
}

std::optional<LabTime> parseLabTime(const std::string& text) {
    if (const auto number = parseDecimal(text)) {
        return fromNumber(*number);
    }
    double ofDay = 0;
    const char* const rest = readTimeOfDay(text.c_str(), ofDay);
    if (rest != nullptr && *rest == '\0') {
        return LabTime{TimeKind::OF_DAY, ofDay};
    }
    return parseDate(text);
}
