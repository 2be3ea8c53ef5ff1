#include "comparison/RunOutcome.h"

#include <algorithm>
#include <fstream>
#include <iterator>
#include <stdexcept>

#include "common/JsonText.h"

namespace {

Json::Value toJson(const Series& series) {
    Json::Value points(Json::arrayValue);
    for (const Series::Point& point : series.points()) {
        Json::Value& pair = points.append(Json::arrayValue);
        pair.append(Json::Int64(point.timeMs));
        pair.append(point.value ? Json::Value(*point.value) : Json::Value());
    }
    return points;
}

void fill(Series& series, const Json::Value& points) {
    for (const Json::Value& pair : points) {
        series.add(pair[0].asInt64(),
                   pair[1].isNull() ? std::nullopt : std::optional(pair[1].asInt()));
    }
}

Json::Value toJson(const Band& band) {
    Json::Value changes(Json::arrayValue);
    for (const Band::Change& change : band.changes()) {
        Json::Value& pair = changes.append(Json::arrayValue);
        pair.append(Json::Int64(change.timeMs));
        pair.append(change.text);
    }
    return changes;
}

void fill(Band& band, const Json::Value& changes) {
    for (const Json::Value& pair : changes) {
        band.add(pair[0].asInt64(), pair[1].asString());
    }
}

Json::Value toJson(const std::vector<Series>& list) {
    Json::Value all(Json::objectValue);
    for (const Series& series : list) {
        all[series.name()] = toJson(series);
    }
    return all;
}

void fill(std::vector<Series>& list, const Json::Value& all) {
    for (const std::string& name : all.getMemberNames()) {
        fill(list.emplace_back(name, "m°C"), all[name]);
    }
}

Json::Value toJson(const ModelError& error) {
    Json::Value json(Json::objectValue);
    json["model"] = error.model;
    json["truth"] = error.truth;
    json["rms"] = error.rms;
    json["bias"] = error.bias;
    json["largest"] = Json::Int64(error.largest);
    json["largestMs"] = Json::Int64(error.largestMs);
    json["passes"] = Json::Int64(error.passes);
    return json;
}

ModelError toModelError(const Json::Value& json) {
    return {json["model"].asString(), json["truth"].asString(),  json["rms"].asDouble(),
            json["bias"].asDouble(),  json["largest"].asInt64(), json["largestMs"].asInt64(),
            json["passes"].asInt64()};
}

Json::Value toJson(const Notification& notification) {
    Json::Value json;
    json["t"] = Json::Int64(notification.timeMs);
    json["listener"] = notification.listener;
    json["kind"] = notification.kind;
    json["values"] = Json::arrayValue;
    for (const auto& [name, value] : notification.values) {
        Json::Value& pair = json["values"].append(Json::arrayValue);
        pair.append(name);
        pair.append(value);
    }
    return json;
}

Notification toNotification(const Json::Value& json) {
    Notification notification{
            json["t"].asInt64(), json["listener"].asString(), json["kind"].asString(), {}};
    for (const Json::Value& pair : json["values"]) {
        notification.values.emplace_back(pair[0].asString(), pair[1]);
    }
    return notification;
}

Series copyOf(const std::string& name, const Series& from, std::optional<int32_t> unknown) {
    Series series(name, from.unit());
    for (const Series::Point& point : from.points()) {
        series.add(point.timeMs, point.value == unknown ? std::nullopt : point.value);
    }
    return series;
}

/** -1 says that there is no figure yet. */
std::vector<Series> knownHeat(const std::vector<Series>& heat) {
    std::vector<Series> result;
    for (const Series& series : heat) {
        result.push_back(copyOf(series.name(), series, -1));
    }
    return result;
}

/** The outputs under their names; where two share one the index tells them apart. */
std::vector<Series> outputs(const PassLog& passes) {
    std::vector<Series> result;
    for (const auto& [index, output] : passes.outputs()) {
        std::string name = passes.outputName(index);
        if (std::ranges::find(result, name, &Series::name) != result.end()) {
            name += " (index " + std::to_string(index) + ")";
        }
        result.push_back(copyOf(name, output.value, std::nullopt));
    }
    return result;
}

}  // namespace

RunOutcome outcomeOf(const Recording& recording) {
    RunOutcome outcome;
    outcome.shell = recording.shell;
    outcome.models = outputs(recording.passes);
    outcome.ambient = recording.ambient;
    outcome.heat = knownHeat(recording.heat);
    outcome.level = recording.level;
    outcome.status = recording.status;
    outcome.scene = recording.scene;
    outcome.heatSource = recording.heatSource;
    outcome.errors = modelErrors(recording);
    outcome.notifications = recording.notifications;
    return outcome;
}

void writeOutcome(std::ostream& out, const RunOutcome& outcome) {
    Json::Value json;
    json["shell"] = toJson(outcome.shell);
    json["models"] = toJson(outcome.models);
    json["ambient"] = toJson(outcome.ambient);
    json["heat"] = toJson(outcome.heat);
    json["scene"] = toJson(outcome.scene);
    json["heatSource"] = toJson(outcome.heatSource);
    json["errors"] = Json::arrayValue;
    for (const ModelError& error : outcome.errors) {
        json["errors"].append(toJson(error));
    }
    json["level"] = toJson(outcome.level);
    json["status"] = toJson(outcome.status);
    json["notifications"] = Json::arrayValue;
    for (const Notification& notification : outcome.notifications) {
        json["notifications"].append(toJson(notification));
    }
    out << common::compactJson(json) << '\n';
}

RunOutcome readOutcome(const std::string& file) {
    std::ifstream in(file, std::ios::binary);
    const auto json = common::parseJson(std::string(std::istreambuf_iterator<char>(in), {}));
    if (!json) {
        throw std::runtime_error("the other run left no outcome: " + file);
    }
    RunOutcome outcome;
    fill(outcome.shell, (*json)["shell"]);
    fill(outcome.models, (*json)["models"]);
    fill(outcome.ambient, (*json)["ambient"]);
    fill(outcome.heat, (*json)["heat"]);
    fill(outcome.scene, (*json)["scene"]);
    fill(outcome.heatSource, (*json)["heatSource"]);
    for (const Json::Value& error : (*json)["errors"]) {
        outcome.errors.push_back(toModelError(error));
    }
    fill(outcome.level, (*json)["level"]);
    fill(outcome.status, (*json)["status"]);
    for (const Json::Value& notification : (*json)["notifications"]) {
        outcome.notifications.push_back(toNotification(notification));
    }
    return outcome;
}
