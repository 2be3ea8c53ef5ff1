#include "sim/scenario/StartTime.h"

#include <charconv>
#include <chrono>

#include "base/Time.h"

namespace sim {

namespace {

/** The number that fills text[at .. at + size). */
std::optional<unsigned> digits(std::string_view text, size_t at, size_t size) {
    unsigned value = 0;
    const char* const first = text.data() + at;
    const auto [end, error] = std::from_chars(first, first + size, value);
    return error == std::errc() && end == first + size ? std::optional(value) : std::nullopt;
}

/** ".25" → 250,000,000; an empty text → 0. */
std::optional<int64_t> fraction(std::string_view text) {
    if (text.empty()) {
        return 0;
    }
    if (text[0] != '.' || text.size() < 2 || text.size() > 10) {
        return std::nullopt;
    }
    const auto value = digits(text, 1, text.size() - 1);
    if (!value) {
        return std::nullopt;
    }
    int64_t ns = *value;
    for (size_t i = text.size() - 1; i < 9; ++i) {
        ns *= 10;
    }
    return ns;
}

}  // namespace

std::optional<int64_t> parseStartTime(std::string_view text) {
    constexpr std::string_view kForm = "dddd-dd-ddTdd:dd:dd";
    if (text.size() < kForm.size() + 1 || text.back() != 'Z') {
        return std::nullopt;
    }
    for (size_t i = 0; i < kForm.size(); ++i) {
        if (kForm[i] != 'd' && text[i] != kForm[i]) {
            return std::nullopt;
        }
    }
    const auto year = digits(text, 0, 4);
    const auto month = digits(text, 5, 2);
    const auto day = digits(text, 8, 2);
    const auto hour = digits(text, 11, 2);
    const auto minute = digits(text, 14, 2);
    const auto second = digits(text, 17, 2);
    const auto ns = fraction(text.substr(kForm.size(), text.size() - kForm.size() - 1));
    if (!year || !month || !day || !hour || !minute || !second || !ns || *year < 1970 ||
        *year > 2200 || *hour > 23 || *minute > 59 || *second > 59) {
        return std::nullopt;
    }
    const std::chrono::year_month_day date{std::chrono::year(static_cast<int>(*year)),
                                           std::chrono::month(*month), std::chrono::day(*day)};
    if (!date.ok()) {
        return std::nullopt;
    }
    const int64_t days = std::chrono::sys_days(date).time_since_epoch().count();
    return (days * 86400 + *hour * 3600 + *minute * 60 + *second) * kelvo::kNanosPerSecond + *ns;
}

}  // namespace sim
