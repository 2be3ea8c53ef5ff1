#include "expectations/Reasons.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <iterator>

#include "heat/ComponentType.h"
#include "sim/scenario/ShortNumber.h"

using kelvo::LevelDecision;

namespace {

constexpr double kMilli = 1000;

std::string decimals(double number) {
    std::array<char, 40> text{};
    std::snprintf(text.data(), text.size(), "%.3f", number);
    return text.data();
}

/** The latest entry at or before a time; null when there is none. */
template <typename Entry>
const Entry* latest(const std::vector<Entry>& list, int64_t timeMs) {
    const auto next = std::ranges::upper_bound(list, timeMs, {}, &Entry::timeMs);
    return next == list.begin() ? nullptr : &*std::prev(next);
}

/** "front 38.123 °C = board-therm 37.1 × 0.32 + … + 2.498" */
std::string modelText(const PassLog::Definition& model, int64_t timeMs, const PassLog& passes) {
    std::string text;
    for (const PassLog::Term& term : model.terms) {
        const auto readings = passes.readings().find(term.zone);
        const auto reading =
                readings != passes.readings().end() ? readings->second.at(timeMs) : std::nullopt;
        text += (text.empty() ? "" : " + ") + term.type + " " +
                decimals(reading.value_or(0) / kMilli) + " × " + sim::shortNumber(term.coefficient);
    }
    if (model.constant) {
        text += (text.empty() ? "" : " + ") + decimals(*model.constant / kMilli);
    }
    return text;
}

/** What cap and limits made of it; empty when nothing. */
std::string limitText(const PassLog::Output& output, int64_t timeMs) {
    const auto fitted = output.fitted.at(timeMs);
    const auto capped = output.capped.at(timeMs);
    const auto value = output.value.at(timeMs);
    std::string text;
    if (capped != fitted && capped) {
        text += ", capped to " + celsiusText(*capped);
    }
    if (value != capped && value) {
        text += ", limited to " + celsiusText(*value) + " (it wanted to move at " +
                std::to_string(output.rate.at(timeMs).value_or(0)) + " m°C/s, limit " +
                std::to_string(output.limit.at(timeMs).value_or(0)) + ")";
    }
    return text;
}

/** The index of the output with this name, or for an empty one of the hottest that is told. */
std::optional<int32_t> outputFor(const std::string& model, int64_t timeMs, const PassLog& passes) {
    std::optional<int32_t> found;
    std::optional<int32_t> most;
    for (const auto& [index, output] : passes.outputs()) {
        const auto value = output.value.at(timeMs);
        if (!model.empty() ? passes.outputName(index) == model
                           : index >= 0 && value && (!most || *value > *most)) {
            found = index;
            most = value;
        }
    }
    return found;
}

std::string failureText(const PassLog::ModelSet& set, const Recording& recording) {
    const auto zone = static_cast<size_t>(set.failedZone);
    return "zone " + std::to_string(set.failedZone) +
           (zone < recording.zones.size() ? " (" + recording.zones[zone].name() + ")" : "") +
           " of " + set.failedModel + " could not be read, so it gave nothing";
}

std::string passReason(const std::string& model, int64_t timeMs, const Recording& recording) {
    const PassLog& passes = recording.passes;
    const PassLog::Pass* const pass = latest(passes.passes(), timeMs);
    if (pass == nullptr) {
        return "no pass of the models until then";
    }
    const PassLog::ModelSet& set = passes.sets()[pass->set];
    const std::string head =
            "pass at " + secondsText(pass->timeMs) + ", scene \"" + set.scene + "\": ";
    if (!set.failedModel.empty()) {
        return head + failureText(set, recording);
    }
    const auto index = outputFor(model, pass->timeMs, passes);
    for (const size_t number : set.definitions) {
        const PassLog::Definition& definition = passes.definitions()[number];
        if (index == definition.index) {
            const PassLog::Output& output = passes.outputs().at(*index);
            return head + definition.name + " " +
                   celsiusText(output.fitted.at(pass->timeMs).value_or(0)) + " = " +
                   modelText(definition, pass->timeMs, passes) + limitText(output, pass->timeMs);
        }
    }
    return head + "no output" + (model.empty() ? "" : " of " + model);
}

std::string thresholdText(const char* what,
                          const std::optional<LevelDecision::Threshold>& threshold) {
    if (!threshold) {
        return {};
    }
    return std::string(", ") + what + (threshold->rising ? " rising" : " falling") +
           " threshold of level " + std::to_string(threshold->level) + ", " +
           std::to_string(threshold->celsius) + " °C";
}

std::string changeText(int32_t before, int32_t after) {
    return (before == after ? "" : std::to_string(before) + " → ") + std::to_string(after);
}

std::string sceneReason(int64_t timeMs, const Recording& recording) {
    const Band::Change* const change = latest(recording.scene.changes(), timeMs);
    if (change == nullptr) {
        return "no pass of the models until then";
    }
    std::string text = "\"" + change->text + "\" since " + secondsText(change->timeMs);
    const Mark* before = nullptr;
    for (const Mark& mark : recording.marks) {
        if (mark.timeMs <= change->timeMs && mark.kind == Mark::Kind::ACTION) {
            before = &mark;
        }
    }
    if (before != nullptr) {
        text += "; the last action before, at " + secondsText(before->timeMs) + ": " + before->text;
    }
    return text;
}

}  // namespace

std::string celsiusText(int64_t milli) {
    return decimals(static_cast<double>(milli) / kMilli) + " °C";
}

std::string secondsText(int64_t timeMs) {
    return sim::shortThousandths(timeMs) + " s";
}

std::string levelReason(int64_t timeMs, const Recording& recording) {
    const auto* const found = latest(recording.decisions, timeMs);
    if (found == nullptr) {
        return "no decision about the level until then";
    }
    const LevelDecision& decision = found->what;
    return "decision at " + secondsText(found->timeMs) + ", shell " + celsiusText(decision.temp) +
           thresholdText("reached", decision.below) + thresholdText("not reached", decision.above) +
           ": level " + changeText(decision.oldLevel, decision.newLevel) + ", status " +
           changeText(decision.oldStatus, decision.newStatus);
}

std::string heatReason(int64_t timeMs, const Recording& recording) {
    const auto* const found = latest(recording.rankings, timeMs);
    if (found == nullptr) {
        return "nobody had asked what heats the phone";
    }
    std::string text = "asked at " + secondsText(found->timeMs) + ":";
    const char* separator = " ";
    for (const auto& contribution : found->what.ranking.contributions) {
        const char* const name = componentName(contribution.component);
        text += separator + std::string(name != nullptr ? name : "?") + " " +
                (contribution.heat == -1 ? "unknown" : celsiusText(contribution.heat));
        separator = ", ";
    }
    const Band::Change* const monitoring = latest(recording.monitoring.changes(), timeMs);
    if (monitoring != nullptr && monitoring->text.empty()) {
        text += "; not monitored since " + secondsText(monitoring->timeMs);
    }
    return text;
}

std::string ambientReason(int64_t timeMs, const Recording& recording) {
    const Series::Point* const point = latest(recording.ambient.points(), timeMs);
    return point == nullptr ? "no estimate until then"
                            : "the estimate since " + secondsText(point->timeMs);
}

std::string reasonOf(const sim::Condition& condition, int64_t timeMs, const Recording& recording) {
    switch (condition.figure) {
        case sim::Figure::SHELL:
        case sim::Figure::MODEL:
            return passReason(condition.model, timeMs, recording);
        case sim::Figure::AMBIENT:
            return ambientReason(timeMs, recording);
        case sim::Figure::LEVEL:
        case sim::Figure::STATUS:
            return levelReason(timeMs, recording);
        case sim::Figure::SCENE:
            return sceneReason(timeMs, recording);
        case sim::Figure::HEAT_SOURCE:
            return heatReason(timeMs, recording);
    }
    return {};
}
