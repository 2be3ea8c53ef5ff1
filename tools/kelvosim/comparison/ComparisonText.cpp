#include "comparison/ComparisonText.h"

#include <algorithm>
#include <array>
#include <cstdarg>
#include <cstdio>
#include <ostream>

#include "common/JsonText.h"

namespace {

constexpr size_t kMostLines = 20;  // of one kind; who wants all has the events
constexpr std::array<const char*, kFates> kFateNames{"same", "other values", "other time",
                                                     "only own", "only other"};

[[gnu::format(printf, 1, 2)]] std::string format(const char* pattern, ...) {
    std::array<char, 256> text{};
    va_list arguments;
    va_start(arguments, pattern);
    std::vsnprintf(text.data(), text.size(), pattern, arguments);
    va_end(arguments);
    return text.data();
}

std::string seconds(int64_t timeMs) {
    return format("%.3f", static_cast<double>(timeMs) / 1000);
}

std::string celsius(std::optional<int32_t> temp) {
    return temp ? format("%.3f", static_cast<double>(*temp) / 1000) : "-";
}

std::string number(std::optional<int32_t> value) {
    return value ? std::to_string(*value) : "-";
}

void writeLeftOut(std::ostream& out, size_t lines) {
    if (lines > kMostLines) {
        out << "  and " << lines - kMostLines << " more\n";
    }
}

void writeShell(std::ostream& out, const ShellDifference& shell, int64_t endMs) {
    if (!shell.first) {
        out << "shell temperature: the same\n";
        return;
    }
    out << "shell temperature (°C)\n  first differs  " << seconds(shell.first->fromMs)
        << " s: " << celsius(shell.first->own) << ", other " << celsius(shell.first->other) << '\n';
    if (shell.largest) {
        const int64_t apart = static_cast<int64_t>(*shell.largest->other) - *shell.largest->own;
        out << "  largest        " << seconds(shell.largest->fromMs)
            << " s: " << celsius(shell.largest->own) << ", other " << celsius(shell.largest->other)
            << format(" (%+.3f)\n", static_cast<double>(apart) / 1000);
    }
    out << format("  mean           %.3f absolute, %+.3f signed\n", shell.meanAbsolute / 1000,
                  shell.meanSigned / 1000)
        << "  differs for    " << seconds(std::min(shell.differentMs, endMs)) << " s of "
        << seconds(endMs) << " s\n";
}

void writeStretches(std::ostream& out, const char* what, const std::vector<Stretch>& stretches,
                    int64_t endMs) {
    if (stretches.empty()) {
        out << what << ": the same\n";
        return;
    }
    out << format("%-27s %6s %6s\n", what, "own", "other");
    for (size_t i = 0; i < std::min(stretches.size(), kMostLines); ++i) {
        const Stretch& stretch = stretches[i];
        const std::string time =
                seconds(stretch.fromMs) + " to " + seconds(std::min(stretch.toMs, endMs)) + " s";
        out << format("  %-25s %6s %6s\n", time.c_str(), number(stretch.own).c_str(),
                      number(stretch.other).c_str());
    }
    writeLeftOut(out, stretches.size());
}

std::string valuesOf(const Notification& notification) {
    std::string text;
    for (const auto& [name, value] : notification.values) {
        if (!value.isObject()) {  // a report of heat would fill the line
            text += " " + name + " " + common::compactJson(value);
        }
    }
    return text;
}

std::string describe(const NotificationDifference& difference) {
    switch (difference.fate) {
        case Fate::OTHER_VALUES:
            return valuesOf(*difference.own) + ", other" + valuesOf(*difference.other);
        case Fate::OTHER_TIME:
            return valuesOf(*difference.own) + ", other at " + seconds(difference.other->timeMs) +
                   " s" + valuesOf(*difference.other);
        default:
            return valuesOf(difference.notification()) + ", " +
                   kFateNames[static_cast<size_t>(difference.fate)];
    }
}

void writeNotifications(std::ostream& out, const Comparison& comparison) {
    if (comparison.notifications.empty()) {
        out << "notifications: the same\n";
        return;
    }
    out << format("%-27s", "notifications");
    for (const char* const name : kFateNames) {
        out << format(" %12s", name);
    }
    for (const auto& [kind, counts] : comparison.counts) {
        out << format("\n  %-25s", kind.c_str());
        for (const int64_t count : counts) {
            out << format(" %12lld", static_cast<long long>(count));
        }
    }
    out << '\n';
    for (size_t i = 0; i < std::min(comparison.notifications.size(), kMostLines); ++i) {
        const NotificationDifference& difference = comparison.notifications[i];
        out << "  " << seconds(difference.timeMs()) << " s " << difference.notification().kind
            << " " << difference.notification().listener << ":" << describe(difference) << '\n';
    }
    writeLeftOut(out, comparison.notifications.size());
}

}  // namespace

void writeComparison(std::ostream& out, const Comparison& comparison, const std::string& scenario,
                     const std::string& other) {
    out << scenario << ": own configuration, and other: " << other << '\n';
    if (comparison.identical()) {
        out << "identical: shell temperature, level, status and notifications\n";
        return;
    }
    writeShell(out, comparison.shell, comparison.endMs);
    writeStretches(out, "level", comparison.levels, comparison.endMs);
    writeStretches(out, "status", comparison.statuses, comparison.endMs);
    writeNotifications(out, comparison);
}
