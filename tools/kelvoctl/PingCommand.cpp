#include "Commands.h"
#include "Services.h"

namespace kelvoctl {

namespace {

void ping(const std::string& name, const Output& output) {
    checkStatus(findService(name)->pingBinder(), name);
    output.print({{"alive", true}}, name + " is alive");
}

}  // namespace

void addPing(CLI::App& app, Output& output) {
    static std::string name = kKelvo;
    CLI::App* const command = app.add_subcommand("ping", "Ask whether a service answers");
    command->add_option("NAME", name, "Its name")->type_name("SERVICE")->capture_default_str();
    command_line::setExamples(*command, {"kelvoctl ping kelvo"});
    command->callback([&] { ping(name, output); });
}

}  // namespace kelvoctl
