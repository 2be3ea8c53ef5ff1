#include <android/log.h>
#include <signal.h>

#include <CLI/CLI.hpp>
#include <iostream>

#include "Commands.h"
#include "Files.h"

using namespace kelvoconf;

namespace {

constexpr int kFailed = 1;
constexpr int kWrongUsage = 2;

void addEncrypt(CLI::App& app, std::string& in, std::string& out) {
    CLI::App* command = app.add_subcommand("encrypt", "Store a JSON text as the daemon reads it");
    command->add_option("IN", in, "JSON text; - is standard input")->required();
    command->add_option("OUT", out, "stored file; - is standard output")->required();
    command->final_callback([&] { encryptCommand(in, out); });
}

void addDecrypt(CLI::App& app, std::string& in, std::string& out) {
    CLI::App* command = app.add_subcommand("decrypt", "Give back the JSON text of a stored file");
    command->add_option("IN", in, "stored file; - is standard input")->required();
    command->add_option("OUT", out, "JSON text; - is standard output")->required();
    command->final_callback([&] { decryptCommand(in, out); });
}

void addMerge(CLI::App& app, MergeOptions& options) {
    CLI::App* command = app.add_subcommand("merge", "Print the document the daemon would hold");
    command->add_option("--platform", options.platform, "platform name, such as SM8450")
            ->required();
    command->add_option("--project", options.project, "project name as its node holds it")
            ->required();
    command->add_flag("--explain", options.explain,
                      "print each key that an override touched, its value and who set it");
    command->add_flag("--json", options.json, "for machines: one object a line");
    command->add_option("MAIN", options.main, "main file, plain or encrypted")->required();
    command->add_option("SUB", options.sub, "the platform's sub-file, plain or encrypted");
    command->final_callback([&] { mergeCommand(options); });
}

int run(int argc, char** argv) {
    CLI::App app("Configuration files of kelvod", "kelvoconf");
    app.set_version_flag("--version", "kelvoconf " KELVO_VERSION);
    app.require_subcommand(1);
    std::string in;
    std::string out;
    MergeOptions merge;
    addEncrypt(app, in, out);
    addDecrypt(app, in, out);
    addMerge(app, merge);
    try {
        app.parse(argc, argv);
    } catch (const CLI::Success& request) {
        return app.exit(request);
    } catch (const CLI::ParseError& error) {
        std::cerr << "kelvoconf: " << error.what() << ": command line\n"
                  << "Run kelvoconf --help for the usage.\n";
        return kWrongUsage;
    }
    return 0;
}

}  // namespace

int main(int argc, char** argv) {
    // The daemon's code logs what the tool reports in its own words.
    __android_log_set_logger([](const __android_logger_data*, const char*) {});
    // A closed pipe is a failed write like any other.
    signal(SIGPIPE, SIG_IGN);
    try {
        return run(argc, argv);
    } catch (const std::exception& error) {
        std::cerr << "kelvoconf: " << error.what() << '\n';
        return kFailed;
    }
}
