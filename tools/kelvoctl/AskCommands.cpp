// Commands that ask for lists, values and documents.

#include <utils/String8.h>

#include "Commands.h"
#include "KelvoCall.h"
#include "common/JsonText.h"

namespace kelvoctl {

namespace {

using namespace kelvo;
using enum client::ReplyType;

constexpr char kNothing[] = "null\n";  // a document before anything was collected

std::string joined(const Json::Value& list, const char* between) {
    std::string text;
    for (const Json::Value& element : list) {
        text += (text.empty() ? "" : between) + element.asString();
    }
    return text;
}

/** No call tells the names: they are numbered in the order of the reply. */
std::string numbered(const char* name, const Json::Value& list) {
    std::string text;
    for (Json::ArrayIndex i = 0; i < list.size(); ++i) {
        text += (i == 0 ? "" : "\n") + std::string(name) + " " + std::to_string(i + 1) + "  " +
                milliCelsiusText(list[i]);
    }
    return text;
}

void temps(uint32_t code, const char* name, const Output& output) {
    const std::vector<Json::Value> values = askKelvo(code, {Int32, Vector});
    const Json::Value& list = values[1];
    output.print({{"temps", list}}, list.empty() ? "none" : numbered(name, list));
}

const char* safetyText(const Json::Value& value) {
    switch (value.asInt()) {
        case 1:
            return " (old_safety_project names the phone's project)";
        case 2:
            return " (old_safety_project does not name the phone's project)";
        default:
            return " (the configuration has no old_safety_project)";
    }
}

void safety(const Output& output) {
    const Json::Value value = askKelvo(IS_NEW_SAFETY_TYPE, {Int32})[0];
    output.print({{"value", value}}, value.asString() + safetyText(value));
}

/** The count stands alone when there are no names. */
void cpuLimit(const Output& output) {
    android::Parcel reply;
    callKelvo(CPU_LIMIT_PROCEESES, {}, &reply);
    Json::Value names(Json::arrayValue);
    if (reply.readInt32() > 0) {
        for (int32_t left = reply.readInt32(); left > 0 && reply.dataAvail() > 0; --left) {
            names.append(android::String8(reply.readString16()).string());
        }
    }
    output.print({{"processes", names}}, names.empty() ? "none" : joined(names, "\n"));
}

/** A document as text: as it came for a person, on one line for a program. */
void printDocument(const std::string& text, const Output& output) {
    if (text.empty() || text == kNothing) {
        output.print({}, "nothing yet");
        return;
    }
    if (!output.json) {
        output.print({}, text.substr(0, text.find_last_not_of('\n') + 1));
        return;
    }
    const auto document = common::parseJson(text);
    if (!document) {
        throw Failure("the daemon's document is no JSON", "reply");
    }
    const std::string line = compactJson(*document) + "\n";
    output.write(line.data(), line.size());
}

void bigData(bool peek, const Output& output) {
    const Json::Value text = askKelvo(peek ? PEEK_BIG_DATA : GET_BIG_DATA, {Exception, String})[1];
    if (text.isNull()) {
        output.print({{"enabled", false}}, "big data is switched off");
        return;
    }
    printDocument(text.asString(), output);
}

}  // namespace

void addAsks(CLI::App& app, Output& output) {
    app.add_subcommand("temps", "The four shell temperatures, by the index of their models")
            ->callback([&] { temps(GET_ALL_SHELL_TEMPS, "shell", output); });
    app.add_subcommand("zones",
                       "The zones that clients may ask for, as specified_tempzone_info has them")
            ->callback([&] { temps(GET_SPECIFIED_ZONE_TEMPS, "zone", output); });
    app.add_subcommand("safety", "The project's kind of safety")->callback([&] { safety(output); });
    app.add_subcommand("cpu-limit", "Processes to limit")->callback([&] { cpuLimit(output); });
    static bool peek = false;
    CLI::App* const bigdata =
            app.add_subcommand("bigdata", "Take the field statistics: the daemon begins anew");
    bigdata->add_flag("--peek", peek, "Leave them where they are");
    bigdata->callback([&] { bigData(peek, output); });
}

void addHeatReport(CLI::App& heat, Output& output) {
    heat.add_subcommand("report", "What each component contributes")->callback([&] {
        const Json::Value text = askKelvo(GET_COMPONENTS_HEAT_DETAIL, {Exception, String})[1];
        printDocument(text.isNull() ? "" : text.asString(), output);
    });
}

}  // namespace kelvoctl
