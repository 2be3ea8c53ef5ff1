#include "Completion.h"

#include <sstream>

#include "CommandTree.h"

namespace command_line {

namespace {

// Stands for the program's name.
constexpr char kName = '~';

// What is the same for all programs.
constexpr char kHead[] =
        R"(# Completion of ~ for bash, made by the program itself; needs nothing but bash.
)";
constexpr char kEngine[] = R"(
# Offers what fits to KIND and what is TYPED: a kind of path, words in braces, or what
# a function of the kind's name prints; a comma before says that a list of them is typed.
_~_offer() {
    local kind=$1 typed=$2 done='' words=''
    if [[ $kind == ,* ]]; then
        kind=${kind#,} typed=${2##*,} done=${2%"${2##*,}"}
    fi
    case $kind in
        FILE) mapfile -t COMPREPLY < <(compgen -f -- "$typed") ;;
        FOLDER) mapfile -t COMPREPLY < <(compgen -d -- "$typed") ;;
        '{'*) words=${kind//[\{\},]/ } ;;
        ?*) if declare -F "_~_$kind" >/dev/null; then words=$("_~_$kind"); fi ;;
    esac
    if [[ $kind == FILE || $kind == FOLDER ]]; then
        compopt -o filenames 2>/dev/null || true
    else
        mapfile -t COMPREPLY < <(compgen -P "$done" -W "$words" -- "$typed")
    fi
    if [[ ${#COMPREPLY[@]} -eq 1 && ${COMPREPLY[0]} == *: ]]; then
        compopt -o nospace 2>/dev/null || true
    fi
}

_~() {
    local current=${COMP_WORDS[COMP_CWORD]} command='' kind='' position=0 word i
    COMPREPLY=()
    for ((i = 1; i < COMP_CWORD; ++i)); do
        word=${COMP_WORDS[i]}
        if [[ $word == -* ]]; then
            kind=$(_~_value "$command" "$word")
        elif [[ -n $kind ]]; then
            kind=''
        elif [[ " $(_~_commands "$command") " == *" $word "* ]]; then
            command="${command:+$command }$word" position=0
        else
            position=$((position + 1))
        fi
    done
    if [[ -n $kind ]]; then
        _~_offer "$kind" "$current"
    elif [[ $current == -* ]]; then
        _~_offer "{$(_~_options "$command")}" "$current"
    elif [[ -n $(_~_commands "$command") ]]; then
        _~_offer "{$(_~_commands "$command")}" "$current"
    else
        kind=$(_~_argument "$command" "$position")
        if [[ $kind != FILE && $kind != FOLDER ]] && declare -F _~_words >/dev/null; then
            kind="{$(_~_words "$command")}"
        fi
        _~_offer "$kind" "$current"
    fi
}

complete -F _~ ~
)";

std::string named(const std::string& text, const std::string& name) {
    std::string script;
    for (const char letter : text) {
        script += letter == kName ? name : std::string(1, letter);
    }
    return script;
}

/** What the script is to offer for a value; empty when it takes none. */
std::string kindOf(const CLI::Option& option) {
    if (!takesValue(option)) {
        return "";
    }
    const std::string type = option.get_type_name();
    const size_t set = type.find('{');
    const std::string kind = set == std::string::npos ? type.substr(0, type.find(':'))
                                                      : type.substr(set, type.find('}') + 1 - set);
    return (option.get_delimiter() == ',' ? "," : "") + kind;
}

/** A shell function that prints what belongs to its arguments. */
class Table {
  public:
    explicit Table(const std::string& name) {
        mScript << "\n_~_" << name << "() {\n    case \"$*\" in\n";
    }
    /** What is printed for these arguments, and with `more` for all that begin with them. */
    void add(const std::string& arguments, const std::string& printed, bool more = false) {
        if (!printed.empty()) {
            mScript << "        '" << arguments << "'" << (more ? "*" : "") << ") echo '" << printed
                    << "' ;;\n";
        }
    }
    std::string end() {
        mScript << "    esac\n}\n";
        return mScript.str();
    }

  private:
    std::ostringstream mScript;
};

std::string joined(std::string words, const std::string& word) {
    return words.empty() ? word : std::move(words) + " " + word;
}

void addCommand(const CLI::App& app, const std::string& path, Table& commands, Table& options) {
    std::string names;
    for (const CLI::App* const command : commandsOf(app)) {
        names = joined(names, command->get_name());
    }
    commands.add(path, names);
    names.clear();
    for (const CLI::Option* const option : optionsOf(app, false)) {
        for (const std::string& name : option->get_lnames()) {
            names = joined(names, "--" + name);
        }
    }
    options.add(path, names);
}

void addKinds(const CLI::App& app, const std::string& path, Table& values, Table& arguments) {
    for (const CLI::Option* const option : optionsOf(app, false)) {
        for (const std::string& name : namesOf(*option)) {
            values.add(path + " " + name, kindOf(*option));
        }
    }
    int position = 0;
    for (const CLI::Option* const argument : optionsOf(app, true)) {
        const bool more = argument->get_items_expected_max() > 1;
        arguments.add(path + " " + (more ? "" : std::to_string(position)), kindOf(*argument), more);
        ++position;
    }
}

}  // namespace

std::string bashCompletion(const CLI::App& app) {
    Table commands("commands");
    Table options("options");
    Table values("value");
    Table arguments("argument");
    visitCommands(app, [&](const CLI::App& command, const std::string& path) {
        addCommand(command, path, commands, options);
        addKinds(command, path, values, arguments);
    });
    return named(kHead + commands.end() + options.end() + values.end() + arguments.end() + kEngine,
                 app.get_name());
}

}  // namespace command_line
