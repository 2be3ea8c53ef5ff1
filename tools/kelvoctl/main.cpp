// kelvoctl: talks to the daemon as the framework of a phone does.

#include <signal.h>

#include <iostream>

#include "Commands.h"

using namespace kelvoctl;

namespace {

constexpr int kFailed = 1;
constexpr int kWrongUsage = 2;

constexpr void (*kCommands[])(CLI::App& app, Output& output) = {
        addStatus, addWatch, addAsks, addConfig, addTells,   addHeat,
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

int fail(const std::exception& error, int status) {
    std::cerr << "kelvoctl: " << error.what() << '\n';
    return status;
}

int run(int argc, char** argv) {
    CLI::App app("A client of the daemon kelvod and its phone", "kelvoctl");
    app.set_version_flag("--version", "kelvoctl " KELVO_VERSION);
    app.require_subcommand(1);
    app.footer(kExamples);
    Output output;
    app.add_flag("--json", output.json, "Print one JSON object on one line");
    for (const auto add : kCommands) {
        add(app, output);
    }
    try {
        app.parse(argc, argv);
    } catch (const CLI::Success& request) {
        return app.exit(request);
    } catch (const CLI::ParseError& error) {
        std::cerr << "kelvoctl: " << error.what() << ": command line\n"
                  << "Run kelvoctl --help for the usage.\n";
        return kWrongUsage;
    }
    return 0;
}

}  // namespace

int main(int argc, char** argv) {
    signal(SIGPIPE, SIG_IGN);  // a reader that goes away is a failure like any other
    try {
        return run(argc, argv);
    } catch (const WrongUsage& error) {
        return fail(error, kWrongUsage);
    } catch (const std::exception& error) {
        return fail(error, kFailed);
    }
}
