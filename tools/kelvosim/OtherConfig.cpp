#include "OtherConfig.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <filesystem>
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

std::string readConfig(const std::string& file) {
    const std::string stored = readFile(file);
    std::string text;
    if (kelvo::decryptConfig(stored, text) == 0) {
        return text;
    }
    const Json::Value root = parse(stored, file);
    // The daemon takes a stored file for broken when its text does not begin with the object.
    return stored.front() == '{' ? stored : common::indentedJson(root);
}

/** Runs the program with more options. */
int runWith(char** argv, std::vector<std::string> added,
            const std::function<void(sim::DeviceTree&)>& prepare) {
    std::vector<char*> arguments;
    for (char** argument = argv; *argument != nullptr; ++argument) {
        arguments.push_back(*argument);
    }
    for (std::string& argument : added) {
        arguments.push_back(argument.data());
    }
    arguments.push_back(nullptr);
    return sim::runBelowOwnRoot(arguments.data(), prepare);
}

}  // namespace

OtherConfig readOtherConfig(const std::string& file, const std::string& platform) {
    namespace fs = std::filesystem;
    OtherConfig other{readConfig(file), "", std::nullopt};
    const fs::path path(file);
    const fs::path sub = path.parent_path() /
                         (path.stem().string() + "_" + platform + path.extension().string());
    std::error_code ignored;
    if (!platform.empty() && fs::exists(sub, ignored)) {
        other.subFile = sub.string();
        other.sub = readConfig(other.subFile);
    }
    return other;
}

void replaceConfig(sim::Scenario& scenario, const OtherConfig& other) {
    scenario.config.main = other.main;
    if (other.sub) {
        scenario.config.platform = other.sub;
    }
}

int runAllWays(char** argv, size_t others, const std::function<void(sim::DeviceTree&)>& prepare) {
    const sim::TemporaryFolder folder("kelvo-outcome-", sim::temporaryMemory());
    std::vector<std::string> compare;
    for (size_t i = 0; i < others; ++i) {
        const std::string outcome = folder.path() + "/outcome" + std::to_string(i);
        const int status =
                runWith(argv, {kOutcomeTo, outcome, kOutcomeOf, std::to_string(i)}, prepare);
        if (status != 0) {
            return status;
        }
        compare.insert(compare.end(), {kCompareWith, outcome});
    }
    return runWith(argv, compare, prepare);
}
