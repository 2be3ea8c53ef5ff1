#include "comparison/RunOutcome.h"

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

}  // namespace

RunOutcome outcomeOf(const Recording& recording) {
    return {recording.shell, recording.level, recording.status, recording.notifications};
}

void writeOutcome(std::ostream& out, const RunOutcome& outcome) {
    Json::Value json;
    json["shell"] = toJson(outcome.shell);
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
    fill(outcome.level, (*json)["level"]);
    fill(outcome.status, (*json)["status"]);
    for (const Json::Value& notification : (*json)["notifications"]) {
        outcome.notifications.push_back(toNotification(notification));
    }
    return outcome;
}
