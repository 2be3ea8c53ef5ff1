#pragma once

#include <string>
#include <string_view>

namespace sim {

/** The host's folder for temporary files. */
std::string temporaryFiles();
/** The same in memory where the host has one, unless TMPDIR names another. */
std::string temporaryMemory();

/** A folder of its own in `parent`, removed with all it holds at the end. */
class TemporaryFolder {
  public:
    explicit TemporaryFolder(std::string_view prefix, const std::string& parent = temporaryFiles());
    ~TemporaryFolder();
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;
    const std::string& path() const { return mPath; }

  private:
    std::string mPath;
};

}  // namespace sim
