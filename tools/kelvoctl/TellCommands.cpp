// Commands that tell the daemon something and get no answer.

#include <algorithm>

#include "Commands.h"
#include "KelvoCall.h"
#include "client/RadioForms.h"

namespace kelvoctl {

namespace {

using namespace kelvo;

void tell(uint32_t code, const std::vector<client::Argument>& arguments, const Output& output) {
    callKelvo(code, arguments);
    output.print({{"ok", true}}, "ok");
}

/** A command with one argument. */
template <typename T>
struct Tell {
    const char* name;
    const char* argument;
    const char* help;
    uint32_t code;
    const char* example;
    T value{};
};

template <typename T>
void add(CLI::App& app, Output& output, Tell<T>& tells) {
    CLI::App* const command = app.add_subcommand(tells.name, tells.help);
    command->add_option(tells.argument, tells.value)->type_name(tells.argument)->required();
    command_line::setExamples(*command,
                              {std::string("kelvoctl ") + tells.name + " " + tells.example});
    command->callback([&] { tell(tells.code, {tells.value}, output); });
}

/** A command with a text of a fixed form. */
struct Radio {
    const char* name;
    const char* help;
    uint32_t code;
    std::vector<client::RadioForm> forms;
    const char* example;
    std::string text{};
};

std::string describe(const std::vector<client::RadioForm>& forms) {
    std::string text;
    for (const client::RadioForm& form : forms) {
        text += (text.empty() ? "" : " or ") + client::formText(form);
    }
    return text;
}

void tellRadio(const Radio& radio, const Output& output) {
    const auto fits = [&radio](const client::RadioForm& form) {
        return client::hasForm(radio.text, form);
    };
    if (std::ranges::none_of(radio.forms, fits)) {
        throw WrongUsage("expected " + describe(radio.forms) + ", N a whole number", radio.text);
    }
    tell(radio.code, {radio.text}, output);
}

void add(CLI::App& app, Output& output, Radio& radio) {
    CLI::App* const command = app.add_subcommand(radio.name, radio.help);
    command->add_option("TEXT", radio.text, describe(radio.forms))->type_name("TEXT")->required();
    command_line::setExamples(*command,
                              {std::string("kelvoctl ") + radio.name + " " + radio.example});
    command->callback([&] { tellRadio(radio, output); });
}

}  // namespace

void addTells(CLI::App& app, Output& output) {
    static Tell<int32_t> numbers[] = {
            {"screen", "N", "The screen is on (1) or off (0)", SET_SCREEN_STATUS, "0"},
            {"lamp", "N", "The flash light is on (1) or off (0)", SET_LIGHT_LAMP_STATUS, "1"},
            {"fold", "N", "The screen is unfolded (1) or folded (any other)",
             SET_SCREEN_FOLD_STATUS, "1"},
            {"notify", "N", "Tell all listeners this status", NOTIFY_THERMAL_STATUS, "3"},
    };
    static Tell<std::string> texts[] = {
            {"package", "NAME", "The package in the foreground", SET_CURRENT_PACKAGE,
             "com.example.game"},
    };
    static Radio radios[] = {
            {"wifi",
             "Wi-Fi signal",
             SET_WIFI_INFO,
             {client::kWifiForm},
             "WifiState:3,ApState:11,linkSpeed:433,frequency:5180,rssi:-60,generation:5"},
            {"network",
             "Cellular signal",
             SET_NETWORK_INFO,
             {client::kLteForm, client::kNrForm},
             "connectState:2,level:3,rssi:-71,rssnr:12,rsrq:-10,rsrp:-95"},
            {"speed",
             "Traffic since the text before, bytes",
             SET_NETWORK_SPEED_INFO,
             {client::kTrafficForm},
             "transmit:1294218,receive:1502154,mobileTx:1294218,mobileRx:1502154"},
    };
    for (auto& number : numbers) {
        add(app, output, number);
    }
    for (auto& text : texts) {
        add(app, output, text);
    }
    for (Radio& radio : radios) {
        add(app, output, radio);
    }
}

void addHeat(CLI::App& app, Output& output) {
    struct HeatCommand {
        const char* name;
        int32_t number;
        const char* help;
    };
    static const HeatCommand kCommands[] = {
            {"start", 1, "Start watching, as the daemon does by itself above 38 °C"},
            {"stop", 2, "Stop watching"},
            {"main", 3, "Log the component that heats most"},
            {"text", 4, "Log what each component contributes, as a text"},
            {"detail", 7, "Log what each component contributes, as JSON"},
            {"feed-start", 5, "Register for the usage service's reports"},
            {"feed-stop", 6, "Stop them"},
    };
    CLI::App* const heat = app.add_subcommand("heat", "The components' heat");
    heat->require_subcommand(1);
    for (const HeatCommand& each : kCommands) {
        heat->add_subcommand(each.name, each.help)->callback([&] {
            tell(COMPONENT_HEAT_TEST, {each.number}, output);
        });
    }
    addHeatReport(*heat, output);
}

}  // namespace kelvoctl
