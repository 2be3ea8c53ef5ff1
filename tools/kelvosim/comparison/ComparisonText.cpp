#include "comparison/ComparisonText.h"

#include <algorithm>
#include <array>
#include <cstdarg>
#include <cstdio>
#include <iterator>
#include <ostream>
#include <type_traits>

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

void writeLeftOut(std::ostream& out, size_t lines) {
    if (lines > kMostLines) {
        out << "  and " << lines - kMostLines << " more\n";
    }
}

void writeFigure(std::ostream& out, const std::string& name, const FigureDifference& figure,
                 int64_t endMs) {
    if (!figure.first) {
        out << name << ": the same\n";
        return;
    }
    out << name << " (°C)\n  first differs  " << seconds(figure.first->fromMs)
        << " s: " << celsius(figure.first->own) << ", other " << celsius(figure.first->other)
        << '\n';
    if (figure.largest) {
        const int64_t apart = static_cast<int64_t>(*figure.largest->other) - *figure.largest->own;
        out << "  largest        " << seconds(figure.largest->fromMs)
            << " s: " << celsius(figure.largest->own) << ", other "
            << celsius(figure.largest->other)
            << format(" (%+.3f)\n", static_cast<double>(apart) / 1000);
    }
    out << format("  mean           %.3f absolute, %+.3f signed\n", figure.meanAbsolute / 1000,
                  figure.meanSigned / 1000)
        << "  differs for    " << seconds(std::min(figure.differentMs, endMs)) << " s of "
        << seconds(endMs) << " s\n";
}

bool differs(const NamedDifference& one) {
    return one.difference.first.has_value();
}

/** Those that differ, each by itself, and in one line those that do not. */
void writeFigures(std::ostream& out, const std::string& kind,
                  const std::vector<NamedDifference>& figures, int64_t endMs) {
    std::string same;
    for (const NamedDifference& one : figures) {
        if (differs(one)) {
            writeFigure(out, kind + " " + one.name, one.difference, endMs);
        } else {
            same += (same.empty() ? " " : ", ") + one.name;
        }
    }
    if (!same.empty()) {
        out << kind << same << ": the same\n";
    }
}

std::string shown(std::optional<int32_t> value) {
    return value ? std::to_string(*value) : "-";
}

std::string shown(const std::string& text) {
    return text.empty() ? "-" : text;
}

template <typename Stretches>
void writeStretches(std::ostream& out, const char* what, const Stretches& stretches,
                    int64_t endMs) {
    if (stretches.empty()) {
        out << what << ": the same\n";
        return;
    }
    const int width = std::is_same_v<Stretches, std::vector<Stretch>> ? 6 : 15;
    out << format("%-27s %*s %*s\n", what, width, "own", width, "other");
    for (size_t i = 0; i < std::min(stretches.size(), kMostLines); ++i) {
        const auto& stretch = stretches[i];
        const std::string time =
                seconds(stretch.fromMs) + " to " + seconds(std::min(stretch.toMs, endMs)) + " s";
        out << format("  %-25s %*s %*s\n", time.c_str(), width, shown(stretch.own).c_str(), width,
                      shown(stretch.other).c_str());
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

/** What differs at all, in the order in which it follows. */
std::string differing(const Comparison& comparison) {
    std::string text;
    const auto add = [&text](bool isOther, const std::string& name) {
        text += isOther ? (text.empty() ? "" : ", ") + name : "";
    };
    add(comparison.shell.first.has_value(), "shell temperature");
    for (const NamedDifference& one : comparison.models) {
        add(differs(one), "model " + one.name);
    }
    add(comparison.ambient.first.has_value(), "ambient temperature");
    add(!comparison.levels.empty(), "level");
    add(!comparison.statuses.empty(), "status");
    add(!comparison.scenes.empty(), "scene");
    add(std::ranges::any_of(comparison.heat, differs) || !comparison.heatSources.empty(), "heat");
    add(!comparison.notifications.empty(), "notifications");
    return text;
}

std::string errorText(const ModelError* error) {
    return error == nullptr
                   ? format(" %8s %8s %8s", "-", "-", "-")
                   : format(" %8.3f %+8.3f %+8.3f", error->rms / 1000,
                            static_cast<double>(error->largest) / 1000, error->bias / 1000);
}

const ModelError* find(const std::vector<ModelError>& errors, const ModelError& like) {
    const auto found = std::ranges::find_if(errors, [&](const ModelError& one) {
        return one.model == like.model && one.truth == like.truth;
    });
    return found != errors.end() ? &*found : nullptr;
}

/** How far both were off what was measured, where anything was. */
void writeErrors(std::ostream& out, const std::vector<ModelError>& own,
                 const std::vector<ModelError>& other) {
    std::vector<ModelError> all = own;
    std::ranges::copy_if(other, std::back_inserter(all),
                         [&](const ModelError& error) { return find(own, error) == nullptr; });
    if (all.empty()) {
        return;
    }
    out << format("%-27s %26s   %26s\n", "error of the models (°C)",
                  "own: r.m.s.  largest     bias", "other: r.m.s.  largest     bias");
    for (const ModelError& error : all) {
        out << format("  %-25s  ", (error.model + " against " + error.truth).c_str())
            << errorText(find(own, error)) << "     " << errorText(find(other, error)) << '\n';
    }
}

}  // namespace

void writeComparison(std::ostream& out, const RunOutcome& own, const ComparedRun& other,
                     const std::string& scenario) {
    const Comparison& comparison = other.comparison;
    out << scenario << ": own configuration, and other: " << other.config
        << (other.sub.empty() ? "" : " with " + other.sub) << '\n';
    if (comparison.identical()) {
        out << "identical: shell temperature, level, status, models, ambient temperature, scene, "
               "heat and notifications\n";
        writeErrors(out, own.errors, other.outcome.errors);
        return;
    }
    const int64_t endMs = comparison.endMs;
    out << "differ: " << differing(comparison) << '\n';
    writeFigure(out, "shell temperature", comparison.shell, endMs);
    writeFigures(out, "model", comparison.models, endMs);
    writeErrors(out, own.errors, other.outcome.errors);
    writeFigure(out, "ambient temperature", comparison.ambient, endMs);
    writeStretches(out, "level", comparison.levels, endMs);
    writeStretches(out, "status", comparison.statuses, endMs);
    writeStretches(out, "scene", comparison.scenes, endMs);
    writeStretches(out, "main heat source", comparison.heatSources, endMs);
    writeFigures(out, "heat of", comparison.heat, endMs);
    writeNotifications(out, comparison);
}
