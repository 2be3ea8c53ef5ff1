#include "OtherConfig.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fstream>
#include <iterator>
#include <string_view>
#include <vector>

#include "common/JsonText.h"
#include "config/ConfigCipher.h"
#include "config/ConfigText.h"
#include "sim/process/RootedRun.h"
#include "sim/scenario/Scenario.h"
#include "sim/tree/TemporaryFolder.h"

namespace {

std::string readFile(const std::string& file) {
    std::ifstream in(file, std::ios::binary);
    std::string text(std::istreambuf_iterator<char>(in), {});
    if (!in.is_open() || in.bad() || text.empty()) {
        const char* const why = !in.is_open() ? strerror(errno) : "it is empty or a folder";
        throw sim::ScenarioError(std::string("cannot read the configuration (") + why + ")", file,
                                 "");
    }
    return text;
}

Json::Value parse(const std::string& text, const std::string& file) {
    Json::Value root;
    kelvo::ConfigTextError error;
    if (kelvo::parseConfigText(text, root, &error) == 0 && root.isObject()) {
        return root;
    }
    const std::string what = error.what.substr(0, error.what.find('\n'));
    const common::TextPlace place = common::placeIn(text, error.offset);
    throw sim::ScenarioError(
            what.empty() ? "expected a JSON object" : "not JSON: " + what, file,
            "line " + std::to_string(place.line) + ", column " + std::to_string(place.column));
}

/** Runs the program with one option more. */
int runWith(char** argv, const char* option, const std::string& value,
            const std::function<void(sim::DeviceTree&)>& prepare) {
    std::vector<std::string> added{option, value};
    std::vector<char*> arguments;
    for (char** argument = argv; *argument != nullptr; ++argument) {
        arguments.push_back(*argument);
    }
    arguments.insert(arguments.end(), {added[0].data(), added[1].data(), nullptr});
    return sim::runBelowOwnRoot(arguments.data(), prepare);
}

}  // namespace

std::string readOtherConfig(const std::string& file) {
    const std::string stored = readFile(file);
    std::string text;
    if (kelvo::decryptConfig(stored, text) == 0) {
        return text;
    }
    const Json::Value root = parse(stored, file);
    // The daemon takes a stored file for broken when its text does not begin with the object.
    return stored.front() == '{' ? stored : common::indentedJson(root);
}

int runBothWays(char** argv, const std::function<void(sim::DeviceTree&)>& prepare) {
    const sim::TemporaryFolder folder("kelvo-outcome-", sim::temporaryMemory());
    const std::string outcome = folder.path() + "/outcome";
    const int status = runWith(argv, kOutcomeTo, outcome, prepare);
    return status != 0 ? status : runWith(argv, kCompareWith, outcome, prepare);
}
