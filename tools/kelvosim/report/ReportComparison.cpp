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

Json::Value stretchesData(const std::vector<Stretch>& stretches) {
    Json::Value data(Json::arrayValue);
    for (const Stretch& stretch : stretches) {
        data.append(stretchData(stretch));
    }
    return data;
}

Json::Value shellData(const ShellDifference& shell) {
    Json::Value data(Json::objectValue);
    data["first"] = stretchData(shell.first);
    data["largest"] = stretchData(shell.largest);
    data["meanAbsolute"] = shell.meanAbsolute;
    data["meanSigned"] = shell.meanSigned;
    data["differentMs"] = Json::Int64{shell.differentMs};
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

Json::Value comparisonData(const ComparedRun& other, const RowTimes& times) {
    Json::Value data(Json::objectValue);
    data["config"] = other.config;
    data["identical"] = other.comparison.identical();
    data["shell"] = seriesData(other.outcome.shell, times);
    data["level"] = seriesData(other.outcome.level, times);
    data["status"] = seriesData(other.outcome.status, times);
    data["shellDifference"] = shellData(other.comparison.shell);
    data["levels"] = stretchesData(other.comparison.levels);
    data["statuses"] = stretchesData(other.comparison.statuses);
    data["counts"] = countsData(other.comparison);
    return data;
}
