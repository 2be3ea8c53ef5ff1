// binderhub: the binder driver in user space, for machines whose kernel has none.

#include <CLI/CLI.hpp>
#include <iostream>

#include "HubClient.h"
#include "Server.h"

namespace {

constexpr int kFailure = 1;
constexpr int kWrongUsage = 2;

int fail(const std::string& problem) {
    std::cerr << "binderhub: " << problem << "\n";
    return kFailure;
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

int run(int argc, char** argv) {
    CLI::App app("The binder driver in user space: serves until SIGTERM or SIGINT", "binderhub");
    app.set_version_flag("--version", "binderhub " KELVO_VERSION);
    std::string socket = binderhub::defaultSocket();
    app.add_option("--socket", socket,
                   "Its socket, else dev/binderhub below the folder that KELVO_ROOT names");
    app.fallthrough();
    const CLI::App* const state = app.add_subcommand(
            "state", "Print what the running hub holds, as JSON; for its user and root only");
    app.require_subcommand(0, 1);
    try {
        app.parse(argc, argv);
    } catch (const CLI::Success& request) {
        return app.exit(request);
    } catch (const CLI::ParseError& error) {
        std::cerr << "binderhub: " << error.what() << ": command line\n"
                  << "Run binderhub --help for the usage.\n";
        return kWrongUsage;
    }
    return state->parsed() ? printState(socket) : serve(socket);
}

}  // namespace

int main(int argc, char** argv) {
    try {
        return run(argc, argv);
    } catch (const std::exception& error) {
        return fail(error.what());
    }
}
