#include "report/ReportData.h"

namespace {

Json::Value figure(std::optional<int32_t> value) {
    return value ? Json::Value(*value) : Json::Value();
}

/** [from, to, own, other], or null. */
Json::Value stretchData(const std::optional<Stretch>& stretch) {
    if (!stretch) {
        return {};
    }
    Json::Value data(Json::arrayValue);
    data.append(Json::Int64{stretch->fromMs});
    data.append(Json::Int64{stretch->toMs});
    data.append(figure(stretch->own));
    data.append(figure(stretch->other));
    return data;
}

Json::Value textsData(const std::vector<TextStretch>& stretches) {
    Json::Value data(Json::arrayValue);
    for (const TextStretch& stretch : stretches) {
        Json::Value& entry = data.append(Json::Value(Json::arrayValue));
        entry.append(Json::Int64{stretch.fromMs});
        entry.append(Json::Int64{stretch.toMs});
        entry.append(stretch.own.empty() ? Json::Value() : Json::Value(stretch.own));
        entry.append(stretch.other.empty() ? Json::Value() : Json::Value(stretch.other));
    }
    return data;
}

Json::Value stretchesData(const std::vector<Stretch>& stretches) {
    Json::Value data(Json::arrayValue);
    for (const Stretch& stretch : stretches) {
        data.append(stretchData(stretch));
    }
    return data;
}

Json::Value figureData(const std::string& name, const FigureDifference& figure) {
    Json::Value data(Json::objectValue);
    data["name"] = name;
    data["first"] = stretchData(figure.first);
    data["largest"] = stretchData(figure.largest);
    data["meanAbsolute"] = figure.meanAbsolute;
    data["meanSigned"] = figure.meanSigned;
    data["differentMs"] = Json::Int64{figure.differentMs};
    return data;
}

/** Every temperature that the two have. */
Json::Value figuresData(const Comparison& comparison) {
    Json::Value data(Json::arrayValue);
    data.append(figureData("shell temperature", comparison.shell));
    for (const NamedDifference& one : comparison.models) {
        data.append(figureData("model " + one.name, one.difference));
    }
    data.append(figureData("ambient temperature", comparison.ambient));
    for (const NamedDifference& one : comparison.heat) {
        data.append(figureData("heat of " + one.name, one.difference));
    }
    return data;
}

Json::Value countsData(const Comparison& comparison) {
    Json::Value data(Json::arrayValue);
    for (const auto& [kind, counts] : comparison.counts) {
        Json::Value entry(Json::arrayValue);
        entry.append(kind);
        for (const int64_t count : counts) {
            entry.append(Json::Int64{count});
        }
        data.append(entry);
    }
    return data;
}

}  // namespace

Json::Value errorsData(const std::vector<ModelError>& errors) {
    Json::Value data(Json::arrayValue);
    for (const ModelError& error : errors) {
        Json::Value& entry = data.append(Json::Value(Json::arrayValue));
        entry.append(error.model);
        entry.append(error.truth);
        entry.append(error.rms);
        entry.append(Json::Int64{error.largest});
        entry.append(Json::Int64{error.largestMs});
        entry.append(error.bias);
    }
    return data;
}

Json::Value comparisonData(const ComparedRun& other, const RowTimes& times) {
    Json::Value data(Json::objectValue);
    data["config"] = other.config;
    data["sub"] = other.sub;
    data["identical"] = other.comparison.identical();
    data["shell"] = seriesData(other.outcome.shell, times);
    data["level"] = seriesData(other.outcome.level, times);
    data["status"] = seriesData(other.outcome.status, times);
    data["figures"] = figuresData(other.comparison);
    data["scenes"] = textsData(other.comparison.scenes);
    data["heatSources"] = textsData(other.comparison.heatSources);
    data["errors"] = errorsData(other.outcome.errors);
    data["levels"] = stretchesData(other.comparison.levels);
    data["statuses"] = stretchesData(other.comparison.statuses);
    data["counts"] = countsData(other.comparison);
    return data;
}
