#pragma once

#include <cstdint>
#include <fstream>
#include <optional>
#include <string>
#include <string_view>

namespace client {

/**
 * What the lines of the daemon's log tell of it that no call does. The daemon writes most of them
 * at any log level; what it says at level 1 alone is unknown below it. Not thread-safe.
 */
class KelvodLog {
  public:
    explicit KelvodLog(std::string path) : mPath(std::move(path)) {}

    /** Takes the lines that were added since the last time; false when there is no such file. */
    bool update();
    /** Takes one line, in whatever form its time and priority stand before the text. */
    void take(std::string_view line);

    const std::string& path() const { return mPath; }
    /**
     * The scene whose models are evaluated; none before the daemon's start is in the log. Its
     * change to backup models is told from log level 1 on.
     */
    std::optional<std::string> scene() const { return mScene == kUnknown ? std::nullopt : mScene; }
    /** The phone's path of the main file in force; told from log level 1 on. */
    const std::optional<std::string>& configFile() const { return mConfigFile; }
    /** What the latest load found wrong, in the daemon's words; none when it found nothing. */
    const std::optional<std::string>& configError() const { return mConfigError; }
    /** How many documents the engines have taken their models from, the old one once more or not.
     */
    int32_t loads() const { return mLoads; }
    /** How often a document was refused, so that the one before stays in force. */
    int32_t refusals() const { return mRefusals; }

  private:
    static constexpr char kUnknown[] = "";

    void start();
    void finishLoad();
    void takeConfigLine(std::string_view line);
    void takeSceneLine(std::string_view line);

    const std::string mPath;
    std::streamoff mTaken = 0;  // bytes
    std::optional<std::string> mScene;
    std::optional<std::string> mConfigFile;
    std::optional<std::string> mChosenFile;  // by a load that may still fail
    std::optional<std::string> mConfigError;
    std::optional<std::string> mFilesError;  // of the load that is under way
    int32_t mLoads = 0;
    int32_t mRefusals = 0;
};

}  // namespace client
