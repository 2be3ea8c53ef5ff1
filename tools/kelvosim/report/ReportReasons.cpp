// What explains a run: passes with their models, level decisions, questions about heat.

#include "report/ReportData.h"

namespace {

/** The times of a list's entries, each once. */
template <typename Entry>
RowTimes timesOf(const std::vector<Entry>& entries) {
    RowTimes times;
    for (const Entry& entry : entries) {
        if (times.empty() || times.back() != entry.timeMs) {
            times.push_back(entry.timeMs);
        }
    }
    return times;
}

Json::Value definitionData(const PassLog::Definition& definition) {
    Json::Value data(Json::objectValue);
    data["index"] = definition.index;
    data["name"] = definition.name;
    data["constant"] = definition.constant ? Json::Value(*definition.constant) : Json::Value();
    Json::Value& terms = data["terms"] = Json::Value(Json::arrayValue);
    for (const PassLog::Term& term : definition.terms) {
        Json::Value entry(Json::arrayValue);
        entry.append(term.zone);
        entry.append(term.coefficient);
        terms.append(entry);
    }
    return data;
}

Json::Value setData(const PassLog::ModelSet& set) {
    Json::Value data(Json::objectValue);
    data["scene"] = set.scene;
    Json::Value& definitions = data["definitions"] = Json::Value(Json::arrayValue);
    for (const size_t definition : set.definitions) {
        definitions.append(Json::UInt64{definition});
    }
    if (!set.failedModel.empty()) {
        data["failedModel"] = set.failedModel;
        data["failedZone"] = set.failedZone;
    }
    return data;
}

Json::Value passesData(const PassLog& log, const RowTimes& times) {
    Json::Value data(Json::objectValue);
    data["times"] = timesData(times);
    Series sets("set", "");
    for (const PassLog::Pass& pass : log.passes()) {
        sets.add(pass.timeMs, static_cast<int32_t>(pass.set));
    }
    data["set"] = seriesData(sets, times);
    Json::Value& allSets = data["sets"] = Json::Value(Json::arrayValue);
    for (const PassLog::ModelSet& set : log.sets()) {
        allSets.append(setData(set));
    }
    Json::Value& definitions = data["definitions"] = Json::Value(Json::arrayValue);
    for (size_t i = 0; i < log.definitions().size(); ++i) {
        Json::Value definition = definitionData(log.definitions()[i]);
        definition["computed"] = seriesData(log.evaluations()[i].computed, times);
        definition["fitted"] = seriesData(log.evaluations()[i].fitted, times);
        definitions.append(definition);
    }
    Json::Value& readings = data["readings"] = Json::Value(Json::objectValue);
    for (const auto& [zone, series] : log.readings()) {
        readings[std::to_string(zone)] = seriesData(series, times);
    }
    return data;
}

Json::Value outputsData(const PassLog& log, const RowTimes& times) {
    Json::Value data(Json::arrayValue);
    for (const auto& [index, output] : log.outputs()) {
        Json::Value entry(Json::objectValue);
        entry["index"] = index;
        entry["name"] = log.outputName(index);
        const std::initializer_list<std::pair<const char*, const Series*>> kParts{
                {"fitted", &output.fitted},     {"capped", &output.capped},
                {"previous", &output.previous}, {"seconds", &output.seconds},
                {"rate", &output.rate},         {"limit", &output.limit},
                {"value", &output.value},       {"written", &output.written}};
        for (const auto& [name, series] : kParts) {
            entry[name] = seriesData(*series, times);
        }
        data.append(entry);
    }
    return data;
}

const char* ruleName(kelvo::LevelDecision::Rule rule) {
    using Rule = kelvo::LevelDecision::Rule;
    switch (rule) {
        case Rule::IN_BAND:
            return "in band";
        case Rule::AT_TOP:
            return "at top";
        case Rule::AT_BOTTOM:
            return "at bottom";
        case Rule::RISING:
            return "rising";
        case Rule::FALLING:
            return "falling";
    }
    return "";
}

/** [rising, level, °C], or null. */
Json::Value thresholdData(const std::optional<kelvo::LevelDecision::Threshold>& threshold) {
    if (!threshold) {
        return {};
    }
    Json::Value data(Json::arrayValue);
    data.append(threshold->rising);
    data.append(threshold->level);
    data.append(threshold->celsius);
    return data;
}

/** All of a decision but its temperature. */
Json::Value groundsData(const kelvo::LevelDecision& decision) {
    Json::Value data(Json::arrayValue);
    data.append(decision.lastLevelTemp);
    data.append(ruleName(decision.rule));
    for (const auto& threshold : {decision.below, decision.above}) {
        data.append(thresholdData(threshold));
    }
    for (const int32_t value :
         {decision.oldLevel, decision.newLevel, decision.oldStatus, decision.newStatus}) {
        data.append(value);
    }
    return data;
}

// Most decisions keep a level for the same grounds as the one before, at another temperature.
Json::Value decisionsData(const std::vector<AtTime<kelvo::LevelDecision>>& decisions) {
    const RowTimes times = timesOf(decisions);
    std::map<Json::Value, int32_t> numbers;
    Json::Value data(Json::objectValue);
    data["times"] = timesData(times);
    data["grounds"] = Json::Value(Json::arrayValue);
    Series temps("temp", "m°C");
    Series grounds("grounds", "");
    for (const auto& [timeMs, decision] : decisions) {
        const Json::Value entry = groundsData(decision);
        const auto [place, isNew] =
                numbers.try_emplace(entry, static_cast<int32_t>(numbers.size()));
        if (isNew) {
            data["grounds"].append(entry);
        }
        temps.add(timeMs, decision.temp);
        grounds.add(timeMs, place->second);
    }
    data["temp"] = seriesData(temps, times);
    data["ground"] = seriesData(grounds, times);
    return data;
}

const char* methodName(kelvo::HeatConversion::Method method) {
    using Method = kelvo::HeatConversion::Method;
    switch (method) {
        case Method::NONE:
            return "none";
        case Method::REMEMBERED:
            return "remembered";
        case Method::MEAN:
            return "mean";
        case Method::AMBIENT:
            return "ambient";
    }
    return "";
}

const char* questionName(kelvo::HeatRanking::Question question) {
    using Question = kelvo::HeatRanking::Question;
    switch (question) {
        case Question::MAIN:
            return "main";
        case Question::TEXT:
            return "text";
        case Question::DETAIL:
            return "detail";
    }
    return "";
}

template <typename Number>
Json::Value mapData(const std::map<std::string, Number>& figures) {
    Json::Value data(Json::objectValue);
    for (const auto& [name, value] : figures) {
        data[name] = static_cast<Json::Int64>(value);
    }
    return data;
}

Json::Value contributionData(const kelvo::HeatRanking::Contribution& contribution,
                             const std::map<int32_t, kelvo::HeatSample>& samples) {
    Json::Value data(Json::objectValue);
    data["component"] = contribution.component;
    data["heat"] = contribution.heat;
    data["method"] = methodName(contribution.conversion.method);
    data["coefficient"] = static_cast<double>(contribution.conversion.coefficient);
    Json::Value& counted = data["samples"] = Json::Value(Json::arrayValue);
    for (const auto& reading : contribution.conversion.samples) {
        counted.append(reading.value);
    }
    if (!contribution.keyFactors.empty()) {
        data["keyFactors"] = mapData(contribution.keyFactors);
    }
    const auto latest = samples.find(contribution.component);
    if (latest != samples.end()) {
        data["source"] = latest->second.source;
        data["figures"] = mapData(latest->second.figures);
    }
    return data;
}

Json::Value rankingsData(const std::vector<AtTime<RecordedRanking>>& rankings) {
    Json::Value data(Json::arrayValue);
    for (const auto& [timeMs, recorded] : rankings) {
        Json::Value entry(Json::objectValue);
        entry["t"] = Json::Int64{timeMs};
        entry["question"] = questionName(recorded.ranking.question);
        entry["main"] = recorded.ranking.mainComponent;
        Json::Value& list = entry["contributions"] = Json::Value(Json::arrayValue);
        for (const auto& contribution : recorded.ranking.contributions) {
            list.append(contributionData(contribution, recorded.samples));
        }
        data.append(entry);
    }
    return data;
}

}  // namespace

void addReasons(Json::Value& data, const Recording& recording) {
    const RowTimes times = timesOf(recording.passes.passes());
    data["passes"] = passesData(recording.passes, times);
    data["outputs"] = outputsData(recording.passes, times);
    data["decisions"] = decisionsData(recording.decisions);
    data["rankings"] = rankingsData(recording.rankings);
}
