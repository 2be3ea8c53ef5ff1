#include <charconv>
#include <optional>

#include "Commands.h"
#include "KelvoCall.h"
#include "Services.h"
#include "base/SplitText.h"
#include "client/CallValues.h"

namespace kelvoctl {

namespace {

struct Call {
    std::string service = kKelvo;
    uint32_t code = 0;
    std::vector<std::string> arguments;
    std::vector<std::string> reply;
};

std::optional<int32_t> parseInt(std::string_view text) {
    int32_t value = 0;
    const char* const end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, value);
    return error == std::errc() && stop == end ? std::optional(value) : std::nullopt;
}

std::optional<std::vector<int32_t>> parseInts(std::string_view text) {
    std::vector<int32_t> numbers;
    if (text.empty()) {
        return numbers;
    }
    for (const std::string_view piece : kelvo::splitText(text, ',')) {
        const auto number = parseInt(piece);
        if (!number) {
            return std::nullopt;
        }
        numbers.push_back(*number);
    }
    return numbers;
}

/** An argument as it is typed: "int32:V", "string:V" or "vector:a,b,…". */
client::Argument parseArgument(const std::string& text) {
    const size_t colon = text.find(':');
    const std::string type = text.substr(0, colon);
    const std::string value = colon == std::string::npos ? "" : text.substr(colon + 1);
    if (type == "string" && colon != std::string::npos) {
        return value;
    }
    if (type == "int32") {
        if (const auto number = parseInt(value)) {
            return *number;
        }
    }
    if (type == "vector" && colon != std::string::npos) {
        if (const auto numbers = parseInts(value)) {
            return *numbers;
        }
    }
    throw WrongUsage("expected int32:NUMBER, string:TEXT or vector:NUMBER,…", text);
}

client::ReplyType parseReplyType(const std::string& name) {
    const auto type = client::replyTypeNamed(name);
    if (!type) {
        throw WrongUsage("expected int32, float, string, vector or exception", name);
    }
    return *type;
}

void printReply(android::status_t status, const Json::Value& values, const Output& output) {
    std::string text;
    for (const Json::Value& value : values) {
        text += (text.empty() ? "" : "\n") +
                (value.isString() ? value.asString() : compactJson(value));
    }
    output.print({{"status", status}, {"values", values}}, text.empty() ? "ok" : text);
}

void perform(const Call& call, const Output& output) {
    android::Parcel request;
    android::Parcel reply;
    request.writeInterfaceToken(toString16(client::kServiceDescriptor));
    for (const std::string& argument : call.arguments) {
        client::writeArgument(parseArgument(argument), request);
    }
    std::vector<client::ReplyType> types;
    for (const std::string& name : call.reply) {
        types.push_back(parseReplyType(name));
    }
    const android::status_t status =
            findService(call.service)->transact(call.code, request, &reply);
    Json::Value values(Json::arrayValue);
    for (size_t i = 0; status == android::OK && i < types.size(); ++i) {
        values.append(readValue(reply, types[i]));
    }
    if (status == android::OK || output.json) {
        printReply(status, values, output);
    }
    checkStatus(status, std::to_string(call.code));
}

}  // namespace

void addCall(CLI::App& app, Output& output) {
    static Call call;
    CLI::App* const command = app.add_subcommand("call", "Send any transaction");
    command->add_option("CODE", call.code, "Transaction code")->type_name("NUMBER")->required();
    command->add_option("ARGUMENT", call.arguments,
                        "int32:NUMBER, string:TEXT or vector:NUMBER,NUMBER,…")
            ->type_name("VALUE");
    command->add_option("--reply", call.reply,
                        "What the reply holds: int32, float, string, vector, exception (the "
                        "no-exception header), with commas between")
            ->delimiter(',')
            ->type_name("{exception,float,int32,string,vector}")
            ->allow_extra_args(false);
    command->add_option("--service", call.service, "The service that is called")
            ->type_name("SERVICE")
            ->capture_default_str();
    command_line::setExamples(*command, {"kelvoctl --json call 4 --reply exception,int32",
                                         "kelvoctl call 6 vector:36000,38000 --reply int32"});
    command->callback([&] { perform(call, output); });
}

}  // namespace kelvoctl
