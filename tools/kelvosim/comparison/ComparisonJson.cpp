#include "comparison/ComparisonJson.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr double kMilli = 1000;

Json::Value seconds(int64_t timeMs) {
    return static_cast<double>(timeMs) / kMilli;
}

/** To the thousandth of m°C: further digits say nothing. */
Json::Value celsius(double milli) {
    return std::round(milli * kMilli) / kMilli / kMilli;
}

Json::Value celsius(std::optional<int32_t> milli) {
    return milli ? Json::Value(static_cast<double>(*milli) / kMilli) : Json::Value();
}

Json::Value moment(const std::optional<Stretch>& stretch) {
    Json::Value json;
    if (stretch) {
        json["t"] = seconds(stretch->fromMs);
        json["own"] = celsius(stretch->own);
        json["other"] = celsius(stretch->other);
    }
    return json;
}

Json::Value toJson(const std::string& name, const FigureDifference& figure, int64_t endMs) {
    Json::Value json(Json::objectValue);
    json["name"] = name;
    json["first"] = moment(figure.first);
    json["largest"] = moment(figure.largest);
    json["mean_absolute"] = celsius(figure.meanAbsolute);
    json["mean_signed"] = celsius(figure.meanSigned);
    json["different_s"] = seconds(std::min(figure.differentMs, endMs));
    return json;
}

Json::Value figures(const Comparison& comparison) {
    Json::Value list(Json::arrayValue);
    list.append(toJson("shell", comparison.shell, comparison.endMs));
    for (const NamedDifference& one : comparison.models) {
        list.append(toJson("model " + one.name, one.difference, comparison.endMs));
    }
    list.append(toJson("ambient", comparison.ambient, comparison.endMs));
    for (const NamedDifference& one : comparison.heat) {
        list.append(toJson("heat " + one.name, one.difference, comparison.endMs));
    }
    return list;
}

Json::Value stateValue(std::optional<int32_t> value) {
    return value ? Json::Value(*value) : Json::Value();
}

Json::Value stateValue(const std::string& text) {
    return text.empty() ? Json::Value() : Json::Value(text);
}

template <typename Stretches>
Json::Value states(const Stretches& stretches, int64_t endMs) {
    Json::Value list(Json::arrayValue);
    for (const auto& stretch : stretches) {
        Json::Value& json = list.append(Json::objectValue);
        json["from"] = seconds(stretch.fromMs);
        json["to"] = seconds(std::min(stretch.toMs, endMs));
        json["own"] = stateValue(stretch.own);
        json["other"] = stateValue(stretch.other);
    }
    return list;
}

Json::Value counts(const Comparison& comparison) {
    constexpr std::array<const char*, kFates> kNames{"same", "other_values", "other_time",
                                                     "only_own", "only_other"};
    Json::Value json(Json::objectValue);
    for (const auto& [kind, numbers] : comparison.counts) {
        for (size_t fate = 0; fate < kFates; ++fate) {
            json[kind][kNames[fate]] = Json::Int64(numbers[fate]);
        }
    }
    return json;
}

Json::Value errors(const std::vector<ModelError>& list) {
    Json::Value all(Json::arrayValue);
    for (const ModelError& error : list) {
        Json::Value& json = all.append(Json::objectValue);
        json["model"] = error.model;
        json["truth"] = error.truth;
        json["rms"] = celsius(error.rms);
        json["largest"] = celsius(static_cast<double>(error.largest));
        json["largest_t"] = seconds(error.largestMs);
        json["bias"] = celsius(error.bias);
        json["passes"] = Json::Int64(error.passes);
    }
    return all;
}

}  // namespace

Json::Value comparisonJson(const RunOutcome& own, const ComparedRun& other,
                           const std::string& scenario) {
    const Comparison& comparison = other.comparison;
    Json::Value json(Json::objectValue);
    json["scenario"] = scenario;
    json["other"] = other.config;
    json["sub"] = stateValue(other.sub);
    json["identical"] = comparison.identical();
    json["figures"] = figures(comparison);
    json["level"] = states(comparison.levels, comparison.endMs);
    json["status"] = states(comparison.statuses, comparison.endMs);
    json["scene"] = states(comparison.scenes, comparison.endMs);
    json["heat_source"] = states(comparison.heatSources, comparison.endMs);
    json["notifications"] = counts(comparison);
    json["errors"]["own"] = errors(own.errors);
    json["errors"]["other"] = errors(other.outcome.errors);
    return json;
}
