#include "client/KelvodLog.h"

#include <algorithm>

namespace client {

namespace {

// The daemon's own texts.
constexpr std::string_view kStart = "kelvo main start";
constexpr std::string_view kModels = "load normal fitting model";
constexpr std::string_view kChosen = "Load config file(";
constexpr std::string_view kSwitched = "switch to scene ";
constexpr std::string_view kBackup = "update current fitting model(scene:";
constexpr std::string_view kFirstBackup = "current fitting model is empty, use backup front model";

constexpr std::string_view kMainFile = "/kelvo.conf";
constexpr std::string_view kDefaultScene = "default";

/** After them the document before stays in force. */
constexpr std::string_view kRefusals[] = {"Get file contents failed!", "Parse config file failed!"};
/** The document is another than the files say. */
constexpr std::string_view kFileFaults[] = {"config file is wrong! try to load origin config",
                                            "Get sub file contents failed!",
                                            "Parse sub config file failed!"};
/** The document is in force, and an engine does not take its part of it. */
constexpr std::string_view kPartFaults[] = {"can't find any valid fitting model, exit.",
                                            "Parse thermal status config faild."};

/** What stands between two texts of a line; none without them. */
std::optional<std::string> between(std::string_view line, std::string_view before,
                                   std::string_view behind) {
    const size_t found = line.find(before);
    if (found == std::string_view::npos) {
        return std::nullopt;
    }
    line.remove_prefix(found + before.size());
    const size_t end = line.find(behind);
    return end == std::string_view::npos ? std::nullopt
                                         : std::optional<std::string>(line.substr(0, end));
}

template <size_t kCount>
std::optional<std::string> textIn(std::string_view line, const std::string_view (&texts)[kCount]) {
    const auto* const found = std::ranges::find_if(
            texts, [line](std::string_view text) { return line.ends_with(text); });
    return found == std::end(texts) ? std::nullopt : std::optional<std::string>(*found);
}

}  // namespace

bool KelvodLog::update() {
    std::ifstream file(mPath, std::ios::ate | std::ios::binary);
    if (!file) {
        return false;
    }
    if (const std::streamoff size = file.tellg(); size < mTaken) {
        mTaken = 0;  // another file
    }
    file.seekg(mTaken);
    // A line without its end is still being written.
    for (std::string line; std::getline(file, line) && !file.eof();) {
        mTaken += static_cast<std::streamoff>(line.size()) + 1;
        take(line);
    }
    return true;
}

void KelvodLog::take(std::string_view line) {
    if (line.ends_with(kStart)) {
        start();
    } else if (line.ends_with(kModels)) {
        finishLoad();
    } else {
        takeConfigLine(line);
        takeSceneLine(line);
    }
}

void KelvodLog::start() {
    mScene.reset();
    mConfigFile.reset();
    mChosenFile.reset();
    mConfigError.reset();
    mFilesError.reset();
}

/** The engines go on with what the files gave, or with the document before. */
void KelvodLog::finishLoad() {
    ++mLoads;
    mConfigError = mFilesError;
    mFilesError.reset();
    if (mChosenFile) {
        mConfigFile = mChosenFile;
        mChosenFile.reset();
    }
    if (!mScene) {
        mScene = kDefaultScene;
    }
}

void KelvodLog::takeConfigLine(std::string_view line) {
    if (const auto path = between(line, kChosen, ")"); path && path->ends_with(kMainFile)) {
        mChosenFile = path;
    } else if (const auto refusal = textIn(line, kRefusals)) {
        ++mRefusals;
        mChosenFile.reset();
        mConfigError = mFilesError = refusal;
    } else if (const auto fault = textIn(line, kFileFaults)) {
        mConfigError = mFilesError = fault;
    } else if (const auto part = textIn(line, kPartFaults)) {
        mConfigError = part;
    }
}

void KelvodLog::takeSceneLine(std::string_view line) {
    if (line.ends_with(kFirstBackup)) {
        mScene = kUnknown;
    } else if (const auto backup = between(line, kBackup, ")")) {
        mScene = backup;
    } else if (const auto scene = between(line, kSwitched, " success")) {
        mScene = scene;
    }
}

}  // namespace client
