#include "report/HtmlReport.h"

#include <fstream>
#include <iterator>
#include <stdexcept>
#include <string_view>

#include "common/JsonText.h"
#include "common/Markup.h"
#include "report/PageAssets.h"
#include "report/ReportData.h"

namespace {

/** A file of the plotting library without the line that points to its sources. */
std::string libraryFile(const std::string& name) {
    const std::string path = std::string(KELVO_DYGRAPHS) + "/" + name;
    std::ifstream file(path, std::ios::binary);
    std::string text{std::istreambuf_iterator<char>(file), {}};
    if (text.empty()) {
        throw std::runtime_error("cannot be read, install the package libjs-dygraphs: " + path);
    }
    const size_t pointer = text.rfind("sourceMappingURL");
    return text.substr(0, text.rfind('\n', pointer));
}

Json::Value warningsData(const std::vector<ReportWarning>& warnings) {
    Json::Value data(Json::arrayValue);
    for (const ReportWarning& warning : warnings) {
        Json::Value entry(Json::objectValue);
        entry["error"] = warning.isError;
        entry["place"] = warning.place;
        entry["what"] = warning.what;
        entry["effect"] = warning.effect;
        entry["mend"] = warning.mend;
        data.append(entry);
    }
    return data;
}

Json::Value verdictsData(const std::vector<Verdict>& verdicts) {
    Json::Value data(Json::arrayValue);
    for (const Verdict& verdict : verdicts) {
        Json::Value entry(Json::objectValue);
        entry["passed"] = verdict.passed;
        entry["place"] = verdict.place;
        entry["name"] = verdict.name;
        entry["expected"] = verdict.expected;
        entry["happened"] = verdict.happened;
        entry["why"] = verdict.why;
        entry["timeMs"] = Json::Int64{verdict.timeMs};
        data.append(entry);
    }
    return data;
}

/** JSON that can stand in a script element: nothing in it ends the element. */
std::string inScript(const Json::Value& data) {
    std::string text;
    for (const char byte : common::compactJson(data, common::JsonStyle::UTF8)) {
        if (byte == '<') {
            text += "\\u003c";
        } else {
            text += byte;
        }
    }
    return text;
}

/** What a place of the page's frame, named between "{{" and "}}", is filled with. */
std::string filling(std::string_view place, const Recording& recording,
                    const ReportAdditions& additions) {
    if (place == "title") {
        return common::escapedMarkup(recording.info.name.empty() ? recording.info.scenario
                                                                 : recording.info.name);
    }
    if (place == "data") {
        Json::Value data = reportData(recording, additions.others);
        data["warnings"] = warningsData(additions.warnings);
        data["problem"] = additions.problem;
        data["verdicts"] = verdictsData(additions.verdicts);
        return inScript(data);
    }
    if (place.starts_with("dygraph")) {
        return libraryFile(std::string(place));
    }
    return std::string(pageAsset(place));
}

}  // namespace

void writeHtmlReport(std::ostream& stream, const Recording& recording,
                     const ReportAdditions& additions) {
    std::string_view frame = pageAsset("page.html");
    for (size_t open = frame.find("{{"); open != std::string_view::npos; open = frame.find("{{")) {
        const size_t close = frame.find("}}", open);
        stream << frame.substr(0, open)
               << filling(frame.substr(open + 2, close - open - 2), recording, additions);
        frame.remove_prefix(close + 2);
    }
    stream << frame;
}
