#include "Commands.h"
#include "KelvoCall.h"
#include "Phone.h"
#include "ServiceDump.h"
#include "client/KelvodLog.h"
#include "client/ThermalLevel.h"
#include "shelltemp/FittingModel.h"

namespace kelvoctl {

namespace {

using namespace kelvo;
using enum client::ReplyType;

constexpr int32_t kNoTemp = -1;
constexpr int32_t kNoStatus = -1;

struct StatusOptions {
    std::string log;  // empty: the phone's own
    bool dump = false;
};

struct TempAndType {
    Json::Value temp;  // m°C; null when the daemon knows none
    Json::Value type;
};

/** Without specified zones a battery has no reading: the reply holds -1 and the type. */
TempAndType tempAndType() {
    const std::vector<Json::Value> values = askKelvo(SHELL_TEMP_AND_TYPE, {Int32, Int32});
    if (values[1].isNull()) {
        return {Json::Value(), values[0]};
    }
    // For this kind the daemon gives the first specified zone's temperature, if there is one.
    const bool unknown =
            values[1] == static_cast<int32_t>(FittingModelKind::OTHER_ZONE) && values[0] == kNoTemp;
    return {unknown ? Json::Value() : values[0], values[1]};
}

const char* kindText(const Json::Value& type) {
    switch (static_cast<FittingModelKind>(type.asInt())) {
        case FittingModelKind::NONE:
            return "no zone";
        case FittingModelKind::SEVERAL_ZONES:
            return "several zones";
        case FittingModelKind::BATTERY_ZONE:
            return "a battery zone";
        case FittingModelKind::OTHER_ZONE:
            return "one zone";
    }
    return "another kind";
}

std::vector<int32_t> toNumbers(const Json::Value& list) {
    std::vector<int32_t> numbers;
    for (const Json::Value& value : list) {
        numbers.push_back(value.asInt());
    }
    return numbers;
}

/** No call tells the level: it follows from the thresholds in force. */
Json::Value level(const Json::Value& status, const Json::Value& celsius) {
    if (status == kNoStatus) {
        return {};
    }
    const std::vector<Json::Value> lists =
            askKelvo(GET_THERMAL_CONFIG, {Exception, Int32, Vector, Int32, Vector, Int32, Vector});
    const auto found =
            client::levelOf({toNumbers(lists[2]), toNumbers(lists[4]), toNumbers(lists[6])},
                            status.asInt(), celsius.asDouble());
    return found ? Json::Value(*found) : Json::Value();
}

Json::Value orNull(const std::optional<std::string>& text) {
    return text ? Json::Value(*text) : Json::Value();
}

/** What the log and, when it is asked for, the dump tell. */
Output::Members told(const StatusOptions& options) {
    client::KelvodLog log(options.log.empty() ? kelvodLogPath() : options.log);
    if (!log.update() && !options.log.empty()) {
        throw Failure("cannot be read", options.log);
    }
    const std::string version = options.dump ? dumpedConfigVersion() : "";
    return {{"scene", orNull(log.scene())},
            {"config_file", orNull(log.configFile())},
            {"config_version", version.empty() ? Json::Value() : Json::Value(version)},
            {"config_error", orNull(log.configError())}};
}

std::string textOf(const Json::Value& value) {
    return value.isNull() ? "unknown" : value.asString();
}

/** One a line, the names in a column of their own. */
std::string table(const std::vector<std::pair<const char*, std::string>>& rows) {
    constexpr size_t kWidth = 16;
    std::string text;
    for (const auto& [name, value] : rows) {
        std::string field = name;
        field.resize(kWidth, ' ');
        text += (text.empty() ? "" : "\n") + field + value;
    }
    return text;
}

std::string forPerson(const Output::Members& object, const Output::Members& told) {
    const Json::Value& temp = object[2].second;
    const Json::Value& type = object[3].second;
    const Json::Value& ambient = object[4].second;
    return table(
            {{"status", object[0].second == kNoStatus ? "none yet (-1)" : textOf(object[0].second)},
             {"level", textOf(object[6].second)},
             {"shell", celsiusText(object[1].second.asDouble())},
             {"model", (temp.isNull() ? "unknown" : celsiusText(temp.asInt() / 1000.0)) +
                               ", type " + type.asString() + " (" + kindText(type) + ")"},
             {"ambient", ambient.isNull() ? "unknown" : ambient.asString() + " °C"},
             {"scene", textOf(told[0].second)},
             {"config file", textOf(told[1].second)},
             {"config version", textOf(told[2].second)},
             {"config error", told[3].second.isNull() ? "none known" : textOf(told[3].second)},
             {"version", textOf(object[5].second)}});
}

void status(const StatusOptions& options, const Output& output) {
    const Json::Value status = askKelvo(GET_THERMAL_STATUS, {Exception, Int32})[1];
    const Json::Value shell = askKelvo(GET_CURRENT_TEMP, {Float})[0];
    const TempAndType kind = tempAndType();
    const Json::Value known = askKelvo(GET_AMBIENT_TEMP, {Int32})[0];
    const Json::Value ambient =
            known == std::numeric_limits<int32_t>::min() ? Json::Value() : known;
    const Json::Value version = askKelvo(GET_VERSION, {Exception, String})[1];
    Output::Members object{{"status", status},
                           {"temp_c", shell},
                           {"temp", kind.temp},
                           {"type", kind.type},
                           {"ambient", ambient},
                           {"version", version},
                           {"level", level(status, shell)}};
    const Output::Members more = told(options);
    const std::string text = output.json ? "" : forPerson(object, more);
    object.insert(object.end(), more.begin(), more.end());
    output.print(object, text);
}

}  // namespace

void addStatus(CLI::App& app, Output& output) {
    static StatusOptions options;
    CLI::App* const command = app.add_subcommand(
            "status", "Status, level, temperatures, scene, configuration and version");
    command->add_option("--log", options.log,
                        "The daemon's log, which tells scene and configuration; else "
                        "data/kelvod.log below the device root")
            ->type_name("FILE");
    command->add_flag("--dump", options.dump,
                      "Ask the dump for the configuration's version; the daemon then hands over "
                      "the day's statistics, as for any dump");
    command_line::setExamples(*command, {"kelvoctl status", "kelvoctl --json status --dump"});
    command->callback([&] { status(options, output); });
}

}  // namespace kelvoctl
