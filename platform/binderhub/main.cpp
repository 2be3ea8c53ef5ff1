// binderhub: the binder driver in user space, for machines whose kernel has none.

#include <iostream>

#include "CommandLine.h"
#include "HubClient.h"
#include "HubSocket.h"
#include "Server.h"

namespace {

int fail(const std::string& problem) {
    command_line::complain("binderhub", problem);
    return command_line::kFailed;
}

int printState(const std::string& socket) {
    std::string json;
    std::string error;
    if (binderhub::hubState(socket, &json, &error) != 0) {
        return fail(error);
    }
    std::cout << json << "\n";
    return 0;
}

int serve(const std::string& socket) {
    const std::string error = binderhub::serve(socket);
    return error.empty() ? 0 : fail(error + ": " + socket);
}

void setUp(CLI::App& app, int& status) {
    static std::string socket = binderhub::defaultSocket();
    app.add_option("--socket", socket,
                   "Its socket, else dev/binderhub below the folder that KELVO_ROOT names")
            ->type_name("FILE");
    app.fallthrough();
    CLI::App* const state = app.add_subcommand(
            "state", "Print what the running hub holds, as JSON; for its user and root only");
    command_line::setExamples(*state, {"KELVO_ROOT=phone binderhub state"});
    app.require_subcommand(0, 1);
    app.callback(
            [state, &status] { status = state->parsed() ? printState(socket) : serve(socket); });
}

}  // namespace

int main(int argc, char** argv) {
    return command_line::run(argc, argv, "binderhub",
                             "The binder driver in user space: serves until SIGTERM or SIGINT",
                             setUp);
}
