// Thresholds and status values of the thermal levels.

#include "Commands.h"
#include "KelvoCall.h"

namespace kelvoctl {

namespace {

using namespace kelvo;
using enum client::ReplyType;

/** Lists that are not given leave the daemon's own in place. */
struct Lists {
    std::vector<int32_t> hold;
    std::vector<int32_t> holdDown;
    std::vector<int32_t> status;
};

std::string row(const char* name, const Json::Value& list) {
    std::string text = name;
    for (const Json::Value& value : list) {
        text += " " + value.asString();
    }
    return text;
}

void show(const Output& output) {
    const std::vector<Json::Value> values =
            askKelvo(GET_THERMAL_CONFIG, {Exception, Int32, Vector, Int32, Vector, Int32, Vector});
    output.print({{"hold", values[2]}, {"hold_down", values[4]}, {"status", values[6]}},
                 row("hold (°C)     ", values[2]) + "\n" + row("hold down (°C)", values[4]) + "\n" +
                         row("status        ", values[6]));
}

void addList(std::vector<client::Argument>& arguments, const std::vector<int32_t>& list) {
    if (list.empty()) {
        arguments.emplace_back(0);
    } else {
        arguments.emplace_back(kListFollows);
        arguments.emplace_back(list);
    }
}

void set(const Lists& lists, const Output& output) {
    std::vector<client::Argument> arguments;
    addList(arguments, lists.hold);
    addList(arguments, lists.holdDown);
    addList(arguments, lists.status);
    const Json::Value result = askKelvo(SET_DYNAMIC_CONFIG, {Int32}, arguments)[0];
    if (result == 1 || output.json) {
        output.print({{"result", result}}, "taken");
    }
    if (result != 1) {
        throw Failure("nothing taken, a list needs 21 values",
                      "--hold " + std::to_string(lists.hold.size()) + ", --hold-down " +
                              std::to_string(lists.holdDown.size()) + ", --status " +
                              std::to_string(lists.status.size()));
    }
}

}  // namespace

void addConfig(CLI::App& app, Output& output) {
    app.add_subcommand("config", "The thresholds in force")->callback([&] { show(output); });
    static Lists lists;
    CLI::App* const command =
            app.add_subcommand("set-config", "Replace thresholds, until a reload");
    command->add_option("--hold", lists.hold, "21 rising thresholds (°C)")
            ->type_name("LIST")
            ->delimiter(',');
    command->add_option("--hold-down", lists.holdDown, "21 falling thresholds (°C)")
            ->type_name("LIST")
            ->delimiter(',');
    command->add_option("--status", lists.status, "21 status values")
            ->type_name("LIST")
            ->delimiter(',');
    command_line::setExamples(*command,
                              {"kelvoctl set-config --hold "
                               "30,33,34,35,36,37,38,39,40,41,42,43,44,45,46,47,48,49,50,51,52"});
    command->callback([&] { set(lists, output); });
}

}  // namespace kelvoctl
