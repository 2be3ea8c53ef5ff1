#include "CommandLine.h"

#include <iostream>

namespace command_line {

namespace {

int parse(int argc, char** argv, CLI::App& app, const int& status) {
    try {
        app.parse(argc, argv);
    } catch (const CLI::Success& request) {
        return app.exit(request);
    } catch (const CLI::ParseError& error) {
        complain(app.get_name(), std::string(error.what()) + ": command line");
        std::cerr << "Run " << app.get_name() << " --help for the usage.\n";
        return kWrongUsage;
    }
    return status;
}

}  // namespace

int run(int argc, char** argv, const std::string& name, const std::string& purpose,
        const std::function<void(CLI::App& app, int& status)>& setUp) {
    try {
        CLI::App app(purpose, name);
        app.set_version_flag("--version", name + " " KELVO_VERSION);
        int status = 0;
        setUp(app, status);
        return parse(argc, argv, app, status);
    } catch (const WrongUsage& error) {
        complain(name, error.what());
        return kWrongUsage;
    } catch (const std::exception& error) {
        complain(name, error.what());
        return kFailed;
    }
}

void complain(const std::string& program, const std::string& problem) {
    std::cerr << program << ": " << problem << '\n';
}

}  // namespace command_line
