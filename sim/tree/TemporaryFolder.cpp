#include "sim/tree/TemporaryFolder.h"

#include <errno.h>
#include <stdlib.h>
#include <unistd.h>

#include <filesystem>
#include <stdexcept>
#include <system_error>

namespace sim {

namespace fs = std::filesystem;

std::string temporaryFiles() {
    std::error_code error;
    const fs::path folder = fs::temp_directory_path(error);
    if (error) {
        const char* const named = getenv("TMPDIR");
        throw std::runtime_error("TMPDIR names no folder: " +
                                 std::string(named != nullptr ? named : "/tmp"));
    }
    return folder.string();
}

std::string temporaryMemory() {
    constexpr const char* kMemory = "/dev/shm";
    const bool usable = getenv("TMPDIR") == nullptr && access(kMemory, W_OK | X_OK) == 0;
    return usable ? kMemory : temporaryFiles();
}

TemporaryFolder::TemporaryFolder(std::string_view prefix, const std::string& parent) {
    std::string name = (fs::path(parent) / (std::string(prefix) + "XXXXXX")).string();
    if (mkdtemp(name.data()) == nullptr) {
        throw std::system_error(errno, std::generic_category(), name);
    }
    mPath = name;
}

TemporaryFolder::~TemporaryFolder() {
    std::error_code ignored;
    fs::remove_all(mPath, ignored);
}

}  // namespace sim
