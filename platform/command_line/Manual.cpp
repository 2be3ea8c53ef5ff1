#include "Manual.h"

#include <algorithm>
#include <cctype>
#include <sstream>

#include "CommandTree.h"

namespace command_line {

namespace {

/** Text of a page: nothing in it is taken for a request, and a hyphen can be searched and pasted.
 */
std::string escaped(const std::string& text) {
    std::string page;
    for (size_t i = 0; i < text.size(); ++i) {
        const bool begins = i == 0 || text[i - 1] == '\n';
        if (begins && (text[i] == '.' || text[i] == '\'')) {
            page += "\\&";
        }
        if (text[i] == '\\') {
            page += "\\e";
        } else {
            page += text[i] == '-' ? "\\-" : std::string(1, text[i]);
        }
    }
    return page;
}

std::string bold(const std::string& text) {
    return "\\fB" + escaped(text) + "\\fR";
}

std::string italic(const std::string& text) {
    return "\\fI" + escaped(text) + "\\fR";
}

/** What follows an option's name in the help: the kind of its value, its default. */
std::string valueOf(const CLI::Option& option) {
    std::string value = " " + italic(option.get_type_name());
    if (!option.get_default_str().empty()) {
        value += escaped("=" + option.get_default_str());
    }
    return value;
}

std::string usageOf(const CLI::App& app, const std::string& command) {
    std::string usage = bold(command) + (optionsOf(app, false).empty() ? "" : " [OPTIONS]");
    for (const CLI::Option* const argument : optionsOf(app, true)) {
        const std::string name = italic(argument->get_name(true));
        usage += argument->get_required() ? " " + name : " [" + name + "]";
        usage += argument->get_items_expected_max() > 1 ? "..." : "";
    }
    return usage + (commandsOf(app).empty() ? "" : " " + italic("COMMAND") + " ...");
}

void writeOptions(const CLI::App& app, std::ostream& page) {
    for (const CLI::Option* const argument : optionsOf(app, true)) {
        page << ".TP\n" << italic(argument->get_name(true));
        const bool says = argument->get_type_name() != argument->get_name(true);
        page << (says ? valueOf(*argument) : "") << '\n' << escaped(argument->get_description());
        page << '\n';
    }
    for (const CLI::Option* const option : optionsOf(app, false)) {
        if (option == app.get_help_ptr() && app.get_parent() != nullptr) {
            continue;  // each command has it: said once, of the program
        }
        std::string names;
        for (const std::string& name : namesOf(*option)) {
            names += (names.empty() ? "" : ", ") + bold(name);
        }
        page << ".TP\n" << names << (takesValue(*option) ? valueOf(*option) : "") << '\n';
        page << escaped(option->get_description()) << '\n';
    }
}

/** Lines as they stand: an example is not to be filled like prose. */
void writeFooter(const CLI::App& app, std::ostream& page) {
    if (!app.get_footer().empty()) {
        page << ".PP\n.nf\n" << escaped(app.get_footer()) << "\n.fi\n";
    }
}

}  // namespace

std::string manualPage(const CLI::App& app, const std::string& version) {
    const std::string name = app.get_name();
    std::string title = name;
    std::transform(title.begin(), title.end(), title.begin(),
                   [](unsigned char letter) { return static_cast<char>(std::toupper(letter)); });
    std::ostringstream page;
    page << ".TH " << escaped(title) << " 1 \"\" \"" << escaped(name + " " + version) << "\"\n";
    page << ".SH NAME\n" << escaped(name) << " \\- " << escaped(app.get_description()) << '\n';
    page << ".SH SYNOPSIS\n" << usageOf(app, name) << '\n';
    page << ".SH OPTIONS\n";
    writeOptions(app, page);
    bool first = true;
    visitCommands(app, [&](const CLI::App& command, const std::string& path) {
        if (!path.empty()) {
            page << (first ? ".SH COMMANDS\n" : "") << ".SS " << usageOf(command, path) << '\n';
            page << escaped(command.get_description()) << '\n';
            writeOptions(command, page);
            if (command.get_footer() != app.get_footer()) {  // which commands inherit
                writeFooter(command, page);
            }
            first = false;
        }
    });
    page << ".SH EXIT STATUS\n0 for success, 1 for a failure, 2 for wrong usage, unless the "
            "command "
            "says otherwise.\n";
    if (!app.get_footer().empty()) {
        page << ".SH NOTES\n";
        writeFooter(app, page);
    }
    return page.str();
}

}  // namespace command_line
