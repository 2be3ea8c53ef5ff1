#include "CommandTree.h"

namespace command_line {

namespace {

void visitBelow(const CLI::App& app, const std::string& path,
                const std::function<void(const CLI::App&, const std::string&)>& visit) {
    visit(app, path);
    for (const CLI::App* const command : commandsOf(app)) {
        visitBelow(*command, path.empty() ? command->get_name() : path + " " + command->get_name(),
                   visit);
    }
}

}  // namespace

std::vector<const CLI::App*> commandsOf(const CLI::App& app) {
    return app.get_subcommands([](const CLI::App* command) {
        return !command->get_group().empty() && !command->get_name().empty();
    });
}

std::vector<const CLI::Option*> optionsOf(const CLI::App& app, bool positional) {
    return app.get_options([positional](const CLI::Option* option) {
        return !option->get_group().empty() && option->get_positional() == positional;
    });
}

std::vector<std::string> namesOf(const CLI::Option& option) {
    std::vector<std::string> names;
    for (const std::string& name : option.get_snames()) {
        names.push_back("-" + name);
    }
    for (const std::string& name : option.get_lnames()) {
        names.push_back("--" + name);
    }
    return names;
}

bool takesValue(const CLI::Option& option) {
    return option.get_items_expected_max() > 0;
}

void visitCommands(const CLI::App& app,
                   const std::function<void(const CLI::App& app, const std::string& path)>& visit) {
    visitBelow(app, "", visit);
}

}  // namespace command_line
