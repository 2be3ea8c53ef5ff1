// Whether the daemon can use a file at all.

#include <json/reader.h>

#include <algorithm>
#include <memory>

#include "config/ConfigFiles.h"
#include "kelvoconf/lint/Rules.h"

namespace kelvo::lint {

namespace {

std::string onOneLine(std::string text) {
    std::ranges::replace(text, '\n', ' ');
    text.erase(text.find_last_not_of(" .") + 1);
    return text;
}

std::string rejected(bool isMain) {
    return isMain ? "rejects the file and keeps the document that it has, none at its start"
                  : "does as if there were no sub-file";
}

/** The first name that an object has twice, and its line; empty when there is none. */
std::pair<std::string, int32_t> repeatedName(const SourceFile& file) {
    Json::CharReaderBuilder builder;
    builder["rejectDupKeys"] = true;
    const std::unique_ptr<Json::CharReader> reader(builder.newCharReader());
    Json::Value root;
    std::string report;
    const std::string& text = file.text();
    reader->parse(text.data(), text.data() + text.size(), &root, &report);
    // "* Line 3, Column 5\n  Duplicate key: 'name'\n"
    constexpr char kLine[] = "* Line ";
    constexpr char kProblem[] = "Duplicate key: '";
    const size_t name = report.find(kProblem);
    if (!report.starts_with(kLine) || name == std::string::npos) {
        return {};
    }
    const size_t start = name + sizeof(kProblem) - 1;
    const int line = std::stoi(report.substr(sizeof(kLine) - 1));
    return {report.substr(start, report.rfind('\'') - start), file.lineAt(0) + line - 1};
}

}  // namespace

void checkSource(const SourceFile& file, bool isMain, FindingList& findings) {
    if (!file.text().starts_with('{')) {
        findings.error("text-before-object", {file.name(), "", file.lineAt(0)},
                       {"the text does not begin with \"{\"", rejected(isMain),
                        "let nothing stand before the object; \"kelvoconf encrypt\" sees to it"});
    }
    if (file.error()) {
        findings.error("not-json", {file.name(), "", file.lineAt(file.error()->offset)},
                       {"not JSON: " + onOneLine(file.error()->what), rejected(isMain),
                        "correct the text here or shortly before"});
        return;
    }
    if (isMain && file.text().find(kMainFileMark) == std::string::npos) {
        findings.error("wrong-main-file", {file.name(), "", file.lineAt(0)},
                       {std::string("the text \"") + kMainFileMark + "\" is nowhere in the file",
                        "takes the file for a wrong one: a copy on the data partition gives way to "
                        "the system's file without its sub-file; the system's file is read again",
                        "give \"thermal_status_model\" its falling thresholds"});
    }
    const auto [name, line] = repeatedName(file);
    if (line > 0) {
        findings.warning("repeated-key", {file.name(), nameInPath(name), line},
                         {quoted(name) + " stands twice in one object", "uses the last one",
                          "drop one of the two"});
    }
}

}  // namespace kelvo::lint
