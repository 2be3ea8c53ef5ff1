#include "CommandLine.h"

#include <fcntl.h>
#include <signal.h>
#include <string.h>
#include <unistd.h>

#include <cerrno>
#include <iostream>
#include <optional>
#include <string_view>

#include "CommandTree.h"
#include "Completion.h"
#include "Manual.h"

namespace command_line {

namespace {

/** The first word that stands where a command should. */
std::optional<std::string> unknownCommand(const CLI::App& app) {
    for (const std::string& word : app.remaining(true)) {
        if (!word.starts_with('-')) {
            return word;
        }
    }
    return std::nullopt;
}

/** What is wrong with the command line, naming a command that does not exist. */
std::string problemOf(const CLI::ParseError& error, const CLI::App& app,
                      const Suggestion& suggestion) {
    const std::optional<std::string> word = unknownCommand(app);
    const auto missing = static_cast<int>(CLI::ExitCodes::RequiredError);
    if (error.get_exit_code() != missing || !word) {
        return error.what();
    }
    const CLI::App* place = &app;  // the innermost command that has commands of its own
    while (!place->get_subcommands().empty()) {
        place = place->get_subcommands().front();
    }
    std::vector<std::string> known;
    for (const CLI::App* command : commandsOf(*place)) {
        known.push_back(command->get_name());
    }
    return "no command \"" + *word + "\"" + (suggestion ? suggestion(*word, known) : "");
}

int parse(int argc, char** argv, CLI::App& app, const int& status, const Suggestion& suggestion) {
    try {
        app.parse(argc, argv);
    } catch (const CLI::Success& request) {
        return app.exit(request);
    } catch (const CLI::ParseError& error) {
        complain(app.get_name(), problemOf(error, app, suggestion) + ": command line");
        std::cerr << "Run " << app.get_name() << " --help for the usage.\n";
        return kWrongUsage;
    }
    return status;
}

/** What the build makes of the description of the command line; no use to users, so not in the
 * help. */
bool printsItself(int argc, char** argv, const CLI::App& app) {
    const std::string_view asked = argc == 2 ? argv[1] : "";
    if (asked == "--manual") {
        std::cout << manualPage(app, KELVO_VERSION);
    } else if (asked == "--completion") {
        std::cout << bashCompletion(app);
    } else {
        return false;
    }
    return true;
}

/** What stands for one that is closed takes no output, so that its loss is noticed. */
void keepStandardDescriptors() {
    for (int fd = STDIN_FILENO; fd <= STDERR_FILENO; ++fd) {
        if (fcntl(fd, F_GETFD) < 0) {
            open("/dev/null", O_RDONLY);  // takes the lowest number, which is this one
        }
    }
}

}  // namespace

void failWriting(int error, const std::string& place) {
    if (error == EPIPE) {
        throw ReaderGone();
    }
    throw Failure(std::string("cannot be written (") + strerror(error) + ")", place);
}

void checkWritten(const std::ostream& stream, const std::string& place) {
    if (!stream) {
        failWriting(errno, place);
    }
}

int run(int argc, char** argv, const std::string& name, const std::string& purpose,
        const std::function<void(CLI::App& app, int& status)>& setUp,
        const Suggestion& suggestion) {
    keepStandardDescriptors();
    signal(SIGPIPE, SIG_IGN);
    try {
        CLI::App app(purpose, name);
        app.set_version_flag("--version", name + " " KELVO_VERSION);
        int status = 0;
        setUp(app, status);
        if (!printsItself(argc, argv, app)) {
            status = parse(argc, argv, app, status, suggestion);
        }
        std::cout.flush();
        checkWritten(std::cout, "standard output");
        return status;
    } catch (const ReaderGone&) {
        return 0;
    } catch (const WrongUsage& error) {
        complain(name, error.what());
        return kWrongUsage;
    } catch (const std::exception& error) {
        complain(name, error.what());
        return kFailed;
    }
}

void setExamples(CLI::App& command, const std::vector<std::string>& lines) {
    std::string footer = lines.size() > 1 ? "Examples:" : "Example:";
    for (const std::string& line : lines) {
        footer += "\n  " + line;
    }
    command.footer(footer);
}

void complain(const std::string& program, const std::string& problem) {
    std::cerr << program << ": " << problem << '\n';
}

}  // namespace command_line
