#include <cstdio>

#include "Commands.h"
#include "KelvoCall.h"
#include "shelltemp/FittingModel.h"

namespace kelvoctl {

namespace {

using namespace kelvo;
using enum client::ReplyType;

constexpr int32_t kNoTemp = -1;

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

std::string celsius(double degrees) {
    char text[32];
    std::snprintf(text, sizeof(text), "%.1f °C", degrees);
    return text;
}

void status(const Output& output) {
    const Json::Value status = askKelvo(GET_THERMAL_STATUS, {Exception, Int32})[1];
    const Json::Value shell = askKelvo(GET_CURRENT_TEMP, {Float})[0];
    const TempAndType kind = tempAndType();
    const Json::Value known = askKelvo(GET_AMBIENT_TEMP, {Int32})[0];
    const Json::Value ambient =
            known == std::numeric_limits<int32_t>::min() ? Json::Value() : known;
    const Json::Value version = askKelvo(GET_VERSION, {Exception, String})[1];
    const std::string model = kind.temp.isNull() ? "unknown" : celsius(kind.temp.asInt() / 1000.0);
    output.print({{"status", status},
                  {"temp_c", shell},
                  {"temp", kind.temp},
                  {"type", kind.type},
                  {"ambient", ambient},
                  {"version", version}},
                 "status   " + status.asString() + "\nshell    " + celsius(shell.asDouble()) +
                         "\nmodel    " + model + ", type " + kind.type.asString() + "\nambient  " +
                         (ambient.isNull() ? "unknown" : ambient.asString() + " °C") +
                         "\nversion  " + version.asString());
}

}  // namespace

void addStatus(CLI::App& app, Output& output) {
    app.add_subcommand("status", "Status, temperatures and version")->callback([&] {
        status(output);
    });
}

}  // namespace kelvoctl
