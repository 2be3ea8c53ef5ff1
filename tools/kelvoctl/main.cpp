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

constexpr char kExamples[] =
        "The phone is the one whose device root KELVO_ROOT names. Its binder driver is what\n"
        "KELVO_BINDER names (kernel or hub), else /dev/binder when it opens, else the phone's "
        "hub.\n"
        "\n"
        "  kelvoctl status\n"
        "  kelvoctl watch --count 3\n"
        "  kelvoctl list\n"
        "  kelvoctl ping kelvo\n"
        "  kelvoctl --json call 4 --reply exception,int32\n"
        "  kelvoctl dump config\n"
        "  kelvoctl setprop persist.sys.shelltemp.interval 1";

void setUp(CLI::App& app) {
    static Output output;
    app.require_subcommand(1);
    app.fallthrough();  // "--json" may stand anywhere
    app.footer(kExamples);
    app.add_flag("--json", output.json, "Print one JSON object on one line");
    for (const auto add : kCommands) {
        add(app, output);
    }
}

}  // namespace

int main(int argc, char** argv) {
    return command_line::run(
            argc, argv, "kelvoctl", "A client of the daemon kelvod and its phone",
            [](CLI::App& app, int&) { setUp(app); }, common::suggestion);
}
