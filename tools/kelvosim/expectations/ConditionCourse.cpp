#include "expectations/ConditionCourse.h"

#include <algorithm>

#include "expectations/Reasons.h"

namespace {

using sim::Figure;

const Series* outputOf(const std::string& model, const PassLog& passes) {
    for (const auto& [index, output] : passes.outputs()) {
        if (passes.outputName(index) == model) {
            return &output.value;
        }
    }
    return nullptr;
}

const Series* seriesOf(const sim::Condition& condition, const Recording& recording) {
    switch (condition.figure) {
        case Figure::SHELL:
            return &recording.shell;
        case Figure::MODEL:
            return outputOf(condition.model, recording.passes);
        case Figure::AMBIENT:
            return &recording.ambient;
        case Figure::LEVEL:
            return &recording.level;
        case Figure::STATUS:
            return &recording.status;
        default:
            return nullptr;
    }
}

const Band* bandOf(const sim::Condition& condition, const Recording& recording) {
    switch (condition.figure) {
        case Figure::SCENE:
            return &recording.scene;
        case Figure::HEAT_SOURCE:
            return &recording.heatSource;
        default:
            return nullptr;
    }
}

template <typename Entry>
void addTimes(const std::vector<Entry>& list, int64_t fromMs, int64_t toMs,
              std::set<int64_t>& times) {
    const auto first = std::ranges::upper_bound(list, fromMs, {}, &Entry::timeMs);
    for (auto entry = first; entry != list.end() && entry->timeMs <= toMs; ++entry) {
        times.insert(entry->timeMs);
    }
}

template <typename Entry>
int64_t latestTime(const std::vector<Entry>& list, int64_t timeMs) {
    const auto next = std::ranges::upper_bound(list, timeMs, {}, &Entry::timeMs);
    return next == list.begin() ? 0 : std::prev(next)->timeMs;
}

}  // namespace

ConditionCourse::ConditionCourse(const sim::Condition& condition, const Recording& recording)
      : mCondition(condition),
        mSeries(seriesOf(condition, recording)),
        mBand(bandOf(condition, recording)) {}

bool ConditionCourse::isKnown(int64_t timeMs) const {
    return mBand != nullptr ? !mBand->at(timeMs).empty() : number(timeMs).has_value();
}

bool ConditionCourse::holds(int64_t timeMs) const {
    if (mBand != nullptr) {
        const std::string name = mBand->at(timeMs);
        return !name.empty() && std::ranges::find(mCondition.names, name) != mCondition.names.end();
    }
    const auto value = number(timeMs);
    return value && mCondition.range.holds(*value);
}

std::optional<int64_t> ConditionCourse::number(int64_t timeMs) const {
    const auto value = mSeries != nullptr ? mSeries->at(timeMs) : std::nullopt;
    return value ? std::optional<int64_t>(*value) : std::nullopt;
}

std::string ConditionCourse::numberText(int64_t value) const {
    const bool isWhole = mCondition.figure == Figure::LEVEL || mCondition.figure == Figure::STATUS;
    return isWhole ? std::to_string(value) : celsiusText(value);
}

std::string ConditionCourse::spanText(int64_t least, int64_t most) const {
    std::string first = numberText(least);
    return name() + " from " + first.substr(0, first.find(' ')) + " to " + numberText(most);
}

std::string ConditionCourse::name() const {
    switch (mCondition.figure) {
        case Figure::SHELL:
            return "shell";
        case Figure::MODEL:
            return "model " + mCondition.model;
        case Figure::AMBIENT:
            return "ambient";
        case Figure::LEVEL:
            return "level";
        case Figure::STATUS:
            return "status";
        case Figure::SCENE:
            return "scene";
        case Figure::HEAT_SOURCE:
            return "heat source";
    }
    return {};
}

std::string ConditionCourse::text(int64_t timeMs) const {
    if (!isKnown(timeMs)) {
        return "no " + name();
    }
    return name() + " " + (mBand != nullptr ? mBand->at(timeMs) : numberText(*number(timeMs)));
}

int64_t ConditionCourse::since(int64_t timeMs) const {
    if (mBand != nullptr) {
        return latestTime(mBand->changes(), timeMs);
    }
    return mSeries != nullptr ? latestTime(mSeries->points(), timeMs) : 0;
}

void ConditionCourse::addChanges(int64_t fromMs, int64_t toMs, std::set<int64_t>& times) const {
    if (mBand != nullptr) {
        addTimes(mBand->changes(), fromMs, toMs, times);
    } else if (mSeries != nullptr) {
        addTimes(mSeries->points(), fromMs, toMs, times);
    }
}
