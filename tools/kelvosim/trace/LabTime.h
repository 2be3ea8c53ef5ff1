#pragma once

#include <optional>
#include <string>
#include <string_view>

/** What a logger's times count from. */
enum class TimeKind {
    ELAPSED,  // a moment of its own
    OF_DAY,   // midnight
    EPOCH     // 1970, UTC
};

struct LabTime {
    TimeKind kind = TimeKind::ELAPSED;
    double seconds = 0;
};

/** A decimal number with a point or a comma; none for any other text. */
std::optional<double> parseDecimal(std::string_view text);

/**
 * A time as loggers write it: seconds; seconds or milliseconds since 1970; "09:58:20";
 * "2026-03-01 09:58:20", also with "T", "/" or dots ("01.03.2026"), all with decimals or none. A
 * date may end in "Z" or an offset such as "+01:00", and is UTC without. None for any other text.
 */
std::optional<LabTime> parseLabTime(const std::string& text);
