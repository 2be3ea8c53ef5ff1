// kelvoctl: talks to the daemon as the framework of a phone does.

#include "CommandLine.h"
#include "Commands.h"
#include "common/NearestName.h"

using namespace kelvoctl;

namespace {

constexpr void (*kCommands[])(CLI::App& app, Output& output) = {
        addStatus, addWatch, addAsks, addConfig, addTells,   addReload,  addHeat,
        addCall,   addDump,  addList, addPing,   addGetprop, addSetprop,
};

constexpr char kPhone[] =
        "The phone is the one whose device root KELVO_ROOT names. Its binder driver is what\n"
        "KELVO_BINDER names (kernel or hub), else /dev/binder when it opens, else the phone's "
        "hub.\n"
        "\n"
        "kelvoctl COMMAND --help ends with an example.";

/** A command that takes nothing needs no more than its name. */
void setPlainExamples(CLI::App& app, const std::string& path) {
    for (CLI::App* const command : app.get_subcommands({})) {
        const std::string typed = path + " " + command->get_name();
        setPlainExamples(*command, typed);
        if (command->get_footer().empty() && command->get_subcommands({}).empty()) {
            command_line::setExamples(*command, {typed});
        }
    }
}

void setUp(CLI::App& app) {
    static Output output;
    app.require_subcommand(1);
    app.fallthrough();  // "--json" may stand anywhere
    app.add_flag("--json", output.json, "Print one JSON object on one line");
    for (const auto add : kCommands) {
        add(app, output);
    }
    setPlainExamples(app, "kelvoctl");
    app.footer(kPhone);
}

}  // namespace

int main(int argc, char** argv) {
    return command_line::run(
            argc, argv, "kelvoctl", "A client of the daemon kelvod and its phone",
            [](CLI::App& app, int&) { setUp(app); }, common::suggestion);
}
