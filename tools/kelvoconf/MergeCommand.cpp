#include <string>

#include "Commands.h"
#include "ConfigInput.h"
#include "Files.h"
#include "JsonLayout.h"
#include "MergeExplanation.h"
#include "config/ConfigMerge.h"
#include "config/PlatformTable.h"

namespace kelvoconf {

namespace {

std::string documentText(const Json::Value& root, bool onOneLine) {
    return onOneLine ? compactJson(root) + "\n" : styledJson(root);
}

std::string explanationText(const MergeExplanation& explanation, bool asJson) {
    return asJson ? toJsonLines(explanation) : toText(explanation);
}

}  // namespace

void warnOfFiles(const PhoneFiles& files) {
    if (!files.platform.empty() && !kelvo::isDetectablePlatform(files.platform)) {
        warn("no phone reports this platform", files.platform);
    }
    if (files.platform.empty() && !files.sub.empty()) {
        warn("a phone of unknown platform has no sub-file, ignored", files.sub);
    }
}

void mergeCommand(const MergeOptions& options) {
    const PhoneFiles& files = options.files;
    warnOfFiles(files);
    Json::Value root = readConfig(files.main);
    const Json::Value sub = files.sub.empty() ? Json::Value() : readConfig(files.sub);
    MergeExplanation explanation;
    kelvo::mergeConfig(root, sub, files.platform, files.project, &explanation);
    for (const kelvo::OverrideSection& section : explanation.ignored()) {
        warn("this section is not an object, ignored", sectionLabel(section));
    }
    writeOutput("-", options.explain ? explanationText(explanation, options.json)
                                     : documentText(root, options.json));
}

}  // namespace kelvoconf
