#include "common/NewFile.h"

#include <fcntl.h>
#include <string.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <stdexcept>
#include <system_error>

namespace common {

namespace {

constexpr mode_t kMode = 0666;  // less what the user's mask takes away

std::string finalPath(const std::string& path) {
    std::error_code error;
    const std::filesystem::path target = std::filesystem::canonical(path, error);
    return error ? path : target.string();
}

std::string folderOf(const std::string& path) {
    const std::filesystem::path folder = std::filesystem::path(path).parent_path();
    return folder.empty() ? "." : folder.string();
}

}  // namespace

NewFile::NewFile(const std::string& path)
      : mPath(finalPath(path)), mName(mPath + ".new" + std::to_string(getpid())) {
    mFd.reset(open(folderOf(mPath).c_str(), O_TMPFILE | O_WRONLY | O_CLOEXEC, kMode));
    if (mFd.get() < 0 && errno != ENOENT && errno != EACCES) {  // no files without a name here
        mFd.reset(open(mName.c_str(), O_CREAT | O_TRUNC | O_WRONLY | O_CLOEXEC, kMode));
        mIsNamed = mFd.get() >= 0;
    }
    if (mFd.get() < 0) {
        fail("cannot create");
    }
}

NewFile::~NewFile() {
    if (mIsNamed) {
        unlink(mName.c_str());
    }
}

void NewFile::fail(const char* what) const {
    throw std::runtime_error(std::string(what) + " (" + strerror(errno) + "): " + mPath);
}

/** Gives it its name, for only a name can take the place of another. */
void NewFile::link() {
    unlink(mName.c_str());  // of one that had this process number before
    const std::string descriptor = "/proc/self/fd/" + std::to_string(mFd.get());
    if (linkat(AT_FDCWD, descriptor.c_str(), AT_FDCWD, mName.c_str(), AT_SYMLINK_FOLLOW) != 0) {
        fail("cannot write");
    }
    mIsNamed = true;
}

void NewFile::finish() {
    if (fsync(mFd.get()) != 0) {
        fail("cannot write");
    }
    if (!mIsNamed) {
        link();
    }
    if (rename(mName.c_str(), mPath.c_str()) != 0) {
        fail("cannot replace");
    }
    mIsNamed = false;
}

bool isWrittenInPlace(const std::string& path) {
    struct stat info = {};
    const bool names = path.rfind("/dev/", 0) == 0 || path.rfind("/proc/", 0) == 0;
    return stat(path.c_str(), &info) == 0 && (names || !S_ISREG(info.st_mode));
}

}  // namespace common
