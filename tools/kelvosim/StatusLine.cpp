#include "StatusLine.h"

#include <cstdio>
#include <ctime>

#include "base/Time.h"

namespace {

constexpr char kUnknown[] = "-";
constexpr char kRow[] = "%-10s  %-5s  %-5s  %-6s  %-7s  %-11s  %-14s  %s";

std::string celsius(std::optional<double> degrees) {
    char text[24] = "-";
    if (degrees) {
        std::snprintf(text, sizeof(text), "%.1f", *degrees);
    }
    return text;
}

std::string number(std::optional<int32_t> value) {
    return value ? std::to_string(*value) : kUnknown;
}

std::string row(const std::string& time, const std::string& shell, const std::string& level,
                const std::string& status, const std::string& ambient, const std::string& source,
                const std::string& scene, const std::string& zone) {
    char text[256];
    std::snprintf(text, sizeof(text), kRow, time.c_str(), shell.c_str(), level.c_str(),
                  status.c_str(), ambient.c_str(), source.c_str(), scene.c_str(), zone.c_str());
    return text;
}

std::string zoneText(const std::optional<sim::ZoneSpec>& zone) {
    return zone ? zone->type + " " + celsius(*zone->temp / 1000.0) : "-";
}

/** "  level 3 -> 4" when it was known before; `value` is the one to come next time. */
std::string change(const char* name, const std::string& value, std::optional<std::string>& known) {
    if (value == kUnknown) {
        return "";
    }
    const std::string before = known.value_or(value);
    known = value;
    return before == value ? "" : "  " + std::string(name) + " " + before + " -> " + value;
}

}  // namespace

std::string StatusLine::heading() {
    return row("phone time", "shell", "level", "status", "ambient", "heat source", "scene",
               "hottest zone (temperatures in °C)");
}

std::string StatusLine::line(const PhoneState& state) {
    const KelvodReport kelvod = state.kelvod.value_or(KelvodReport());
    const std::string level = number(kelvod.level);
    const std::string scene = state.kelvod ? state.scene.value_or(kUnknown) : kUnknown;
    return row(wallClock(state.timeMs), celsius(kelvod.shell), level, number(kelvod.status),
               number(kelvod.ambient), kelvod.heatSource.value_or(kUnknown), scene,
               zoneText(state.hottestZone) + (state.kelvod ? "" : "  (kelvod does not answer)") +
                       change("level", level, mLevel) + change("scene", scene, mScene));
}

std::string StatusLine::wallClock(int64_t timeMs) const {
    const std::time_t seconds = mStartNs / kelvo::kNanosPerSecond + timeMs / 1000;
    std::tm utc{};
    gmtime_r(&seconds, &utc);
    char text[16];
    std::strftime(text, sizeof(text), "%H:%M:%S", &utc);
    return text;
}
