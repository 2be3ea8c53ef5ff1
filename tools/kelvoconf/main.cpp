#include <android/log.h>

#include "CommandLine.h"
#include "Commands.h"
#include "common/NearestName.h"

using namespace kelvoconf;

namespace {

void addEncrypt(CLI::App& app, std::string& in, std::string& out) {
    static bool force = false;
    CLI::App* command = app.add_subcommand("encrypt", "Store a JSON text as the daemon reads it");
    command->add_option("IN", in, "JSON text; - is standard input")->type_name("FILE")->required();
    command->add_option("OUT", out, "stored file; - is standard output")
            ->type_name("FILE")
            ->required();
    command->add_flag("--force", force, "store a text that the daemon will reject as well");
    command_line::setExamples(*command, {"kelvoconf encrypt kelvo.json kelvo.conf"});
    command->final_callback([&] { encryptCommand(in, out, force); });
}

void addDecrypt(CLI::App& app, std::string& in, std::string& out) {
    CLI::App* command = app.add_subcommand("decrypt", "Give back the JSON text of a stored file");
    command->add_option("IN", in, "stored file; - is standard input")
            ->type_name("FILE")
            ->required();
    command->add_option("OUT", out, "JSON text; - is standard output")
            ->type_name("FILE")
            ->required();
    command_line::setExamples(*command, {"kelvoconf decrypt kelvo.conf -"});
    command->final_callback([&] { decryptCommand(in, out); });
}

struct PhoneOptions {
    CLI::Option* platform;
    CLI::Option* project;
};

PhoneOptions addFiles(CLI::App& command, PhoneFiles& files) {
    const PhoneOptions options{
            command.add_option("--platform", files.platform, "platform name, such as SM8450"),
            command.add_option("--project", files.project, "project name as its node holds it")};
    options.platform->type_name("NAME");
    options.project->type_name("NAME");
    command.add_option("MAIN", files.main, "main file, plain or encrypted")
            ->type_name("FILE")
            ->required();
    command.add_option("SUB", files.sub, "the platform's sub-file, plain or encrypted")
            ->type_name("FILE");
    return options;
}

void addMerge(CLI::App& app, MergeOptions& options) {
    CLI::App* command = app.add_subcommand("merge", "Print the document the daemon would hold");
    const PhoneOptions phone = addFiles(*command, options.files);
    phone.platform->required();
    phone.project->required();
    command->add_flag("--explain", options.explain,
                      "print each key that an override touched, its value and who set it");
    command->add_flag("--json", options.json, "for machines: one object a line");
    command_line::setExamples(*command,
                              {"kelvoconf merge --platform SM8450 --project 30117 --explain "
                               "examples/game/kelvo.json examples/game/kelvo_SM8450.json"});
    command->final_callback([&] { mergeCommand(options); });
}

void addLint(CLI::App& app, LintOptions& options, int& status) {
    CLI::App* command = app.add_subcommand(
            "lint",
            "Find mistakes and traps; status 0 clean, 1 warnings only, 3 errors.\n"
            "Without --platform or --project for all that the files name, and any other");
    const PhoneOptions phone = addFiles(*command, options.files);
    command->add_option("--zones", options.zones,
                        "zone types in index order, one a line, or what draft --zones-only "
                        "prints, or a device root; models are judged at the samples of the "
                        "latter two")
            ->type_name("FILE");
    command->add_option("--trace", options.trace,
                        "CSV file as scenarios have it, such as trace.csv: models are judged at "
                        "the temperatures (m°C) of its rows")
            ->type_name("FILE");
    command->add_flag("--json", options.json, "for machines: one object a line");
    command_line::setExamples(*command, {"kelvoconf lint --platform SM8450 --project 30117 "
                                         "examples/game/kelvo.json examples/game/kelvo_SM8450.json",
                                         "kelvoconf lint --trace examples/tuning/trace.csv "
                                         "examples/tuning/kelvo.json"});
    command->final_callback([&options, &status, phone] {
        options.onlyPlatform = phone.platform->count() > 0;
        options.onlyProject = phone.project->count() > 0;
        status = lintCommand(options);
    });
}

void addShow(CLI::App& app, PhoneFiles& files) {
    CLI::App* command =
            app.add_subcommand("show", "Print scenes, models, zones and thresholds as tables");
    addFiles(*command, files);
    command_line::setExamples(*command, {"kelvoconf show examples/hello/kelvo.json"});
    command->final_callback([&] { showCommand(files); });
}

void addDraft(CLI::App& app, DraftOptions& options) {
    CLI::App* command = app.add_subcommand(
            "draft", "List a phone's zones on standard error, print a configuration for them");
    command->add_option("--root", options.root,
                        "device root: folder that stands for / of the phone")
            ->type_name("FOLDER")
            ->required();
    command->add_option("--output", options.output,
                        "file for the configuration; the list is then on standard output")
            ->type_name("FILE");
    command->add_flag("--zones-only", options.zonesOnly,
                      "print the list alone, on standard output");
    command->add_flag("--json", options.json, "list for machines: one object a line");
    command_line::setExamples(*command, {"kelvoconf draft --root / --zones-only",
                                         "kelvoconf draft --root / --output kelvo.json"});
    command->final_callback([&] { draftCommand(options); });
}

void setUp(CLI::App& app, int& status) {
    static std::string in;
    static std::string out;
    static MergeOptions merge;
    static LintOptions lint;
    static PhoneFiles show;
    static DraftOptions draft;
    app.require_subcommand(1);
    addEncrypt(app, in, out);
    addDecrypt(app, in, out);
    addMerge(app, merge);
    addLint(app, lint, status);
    addShow(app, show);
    addDraft(app, draft);
}

}  // namespace

int main(int argc, char** argv) {
    // The daemon's code logs what the tool reports in its own words.
    __android_log_set_logger([](const __android_logger_data*, const char*) {});
    return command_line::run(argc, argv, "kelvoconf", "Configuration files of kelvod", setUp,
                             common::suggestion);
}
