#include <string>

#include "Commands.h"
#include "ConfigInput.h"
#include "Files.h"
#include "JsonText.h"
#include "MergeExplanation.h"
#include "config/ConfigMerge.h"
#include "config/PlatformTable.h"

namespace kelvoconf {

namespace {

void warnOfOptions(const MergeOptions& options) {
    if (!options.platform.empty() && !kelvo::isDetectablePlatform(options.platform)) {
        warn("no phone reports this platform", options.platform);
    }
    if (options.platform.empty() && !options.sub.empty()) {
        warn("a phone of unknown platform has no sub-file, ignored", options.sub);
    }
}

std::string documentText(const Json::Value& root, bool onOneLine) {
    return onOneLine ? compactJson(root) + "\n" : styledJson(root);
}

std::string explanationText(const MergeExplanation& explanation, bool asJson) {
    return asJson ? toJsonLines(explanation) : toText(explanation);
}

}  // namespace

void mergeCommand(const MergeOptions& options) {
    warnOfOptions(options);
    Json::Value root = readConfig(options.main);
    const Json::Value sub = options.sub.empty() ? Json::Value() : readConfig(options.sub);
    MergeExplanation explanation;
    kelvo::mergeConfig(root, sub, options.platform, options.project, &explanation);
    for (const kelvo::OverrideSection& section : explanation.ignored()) {
        warn("this section is not an object, ignored", sectionLabel(section));
    }
    writeOutput("-", options.explain ? explanationText(explanation, options.json)
                                     : documentText(root, options.json));
}

}  // namespace kelvoconf
