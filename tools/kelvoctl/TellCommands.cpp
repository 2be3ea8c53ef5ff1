// Commands that tell the daemon something and get no answer.

#include "Commands.h"
#include "KelvoCall.h"

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
    T value{};
};

template <typename T>
void add(CLI::App& app, Output& output, Tell<T>& tells) {
    CLI::App* const command = app.add_subcommand(tells.name, tells.help);
    command->add_option(tells.argument, tells.value)->required();
    command->callback([&] { tell(tells.code, {tells.value}, output); });
}

}  // namespace

void addTells(CLI::App& app, Output& output) {
    static Tell<int32_t> numbers[] = {
            {"screen", "N", "The screen is on (1) or off (0)", SET_SCREEN_STATUS},
            {"lamp", "N", "The flash light is on (1) or off (0)", SET_LIGHT_LAMP_STATUS},
            {"fold", "N", "The screen is unfolded (1) or folded (any other)",
             SET_SCREEN_FOLD_STATUS},
            {"notify", "N", "Tell all listeners this status", NOTIFY_THERMAL_STATUS},
    };
    static Tell<std::string> texts[] = {
            {"package", "NAME", "The package in the foreground", SET_CURRENT_PACKAGE},
            {"wifi", "TEXT", "Wi-Fi signal", SET_WIFI_INFO},
            {"network", "TEXT", "Cellular signal", SET_NETWORK_INFO},
            {"speed", "TEXT", "Traffic", SET_NETWORK_SPEED_INFO},
    };
    for (auto& number : numbers) {
        add(app, output, number);
    }
    for (auto& text : texts) {
        add(app, output, text);
    }
    app.add_subcommand("reload", "Read the configuration again, in three seconds")->callback([&] {
        tell(RELOAD_CONFIG, {}, output);
    });
}

void addHeat(CLI::App& app, Output& output) {
    static const std::pair<const char*, int32_t> kCommands[] = {
            {"start", 1},  {"stop", 2},       {"main", 3},      {"text", 4},
            {"detail", 7}, {"feed-start", 5}, {"feed-stop", 6},
    };
    CLI::App* const heat = app.add_subcommand("heat", "The components' heat");
    heat->require_subcommand(1);
    for (const auto& [name, number] : kCommands) {
        heat->add_subcommand(name, "Test command " + std::to_string(number))
                ->callback(
                        [&output, value = number] { tell(COMPONENT_HEAT_TEST, {value}, output); });
    }
    addHeatReport(*heat, output);
}

}  // namespace kelvoctl
