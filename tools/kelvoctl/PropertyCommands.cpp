#include <cutils/properties.h>

#include <array>

#include "Commands.h"
#include "Phone.h"

namespace kelvoctl {

namespace {

void getprop(const std::string& name, const Output& output) {
    requirePhone();
    std::array<char, PROPERTY_VALUE_MAX> value{};
    property_get(name.c_str(), value.data(), "");
    output.print({{"value", value.data()}}, value.data());
}

void setprop(const std::string& name, const std::string& value, const Output& output) {
    requirePhone();
    if (property_set(name.c_str(), value.c_str()) != 0) {
        throw Failure("the property cannot be set", name);
    }
    output.print({{"ok", true}}, "ok");
}

}  // namespace

void addGetprop(CLI::App& app, Output& output) {
    static std::string name;
    CLI::App* const command =
            app.add_subcommand("getprop", "Value of a system property, empty when it is not set");
    command->add_option("NAME", name, "Its name")->type_name("PROPERTY")->required();
    command_line::setExamples(*command, {"kelvoctl getprop persist.sys.shelltemp.interval"});
    command->callback([&] { getprop(name, output); });
}

void addSetprop(CLI::App& app, Output& output) {
    static std::string name;
    static std::string value;
    CLI::App* const command = app.add_subcommand("setprop", "Set a system property");
    command->add_option("NAME", name, "Its name")->type_name("PROPERTY")->required();
    command->add_option("VALUE", value, "Its value; \"\" is the empty one")
            ->type_name("VALUE")
            ->required();
    command_line::setExamples(*command, {"kelvoctl setprop persist.sys.shelltemp.interval 1"});
    command->callback([&] { setprop(name, value, output); });
}

}  // namespace kelvoctl
