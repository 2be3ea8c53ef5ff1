#include "Files.h"

#include <errno.h>
#include <fcntl.h>
#include <stdlib.h>
#include <string.h>
#include <sys/stat.h>
#include <unistd.h>

#include <android-base/unique_fd.h>

#include <filesystem>
#include <iostream>
#include <system_error>

using android::base::unique_fd;

namespace kelvoconf {

namespace {

constexpr mode_t kFileMode = 0644;

[[noreturn]] void fail(const char* what, const std::string& where) {
    throw Failure(std::string(what) + " (" + strerror(errno) + "): " + where);
}

void writeAll(int fd, const std::string& bytes, const std::string& where) {
    for (size_t done = 0; done < bytes.size();) {
        const ssize_t count = write(fd, bytes.data() + done, bytes.size() - done);
        if (count < 0 && errno != EINTR) {
            fail("cannot write", where);
        }
        done += count > 0 ? static_cast<size_t>(count) : 0;
    }
}

// A link is followed, so that the file it names is replaced and not the link.
std::string finalPath(const std::string& path) {
    std::error_code error;
    const std::filesystem::path target = std::filesystem::canonical(path, error);
    return error ? path : target.string();
}

bool isSpecialFile(const std::string& path) {
    struct stat info = {};
    return stat(path.c_str(), &info) == 0 && !S_ISREG(info.st_mode);
}

void writeSpecialFile(const std::string& path, const std::string& bytes) {
    const unique_fd fd(open(path.c_str(), O_WRONLY | O_CLOEXEC));
    if (fd.get() < 0) {
        fail("cannot open", path);
    }
    writeAll(fd.get(), bytes, path);
}

/** A file beside the one to replace; removed unless it was renamed to it. */
class NewFile {
  public:
    explicit NewFile(const std::string& path) : mPath(path), mName(path + ".XXXXXX") {
        mFd.reset(mkostemp(mName.data(), O_CLOEXEC));
        if (mFd.get() < 0) {
            fail("cannot create", mPath);
        }
    }
    ~NewFile() {
        if (!mName.empty()) {
            unlink(mName.c_str());
        }
    }
    NewFile(const NewFile&) = delete;
    NewFile& operator=(const NewFile&) = delete;

    void store(const std::string& bytes) {
        writeAll(mFd.get(), bytes, mPath);
        if (fchmod(mFd.get(), kFileMode) != 0 || fsync(mFd.get()) != 0) {
            fail("cannot write", mPath);
        }
        if (rename(mName.c_str(), mPath.c_str()) != 0) {
            fail("cannot replace", mPath);
        }
        mName.clear();
    }

  private:
    const std::string mPath;
    std::string mName;  // empty once renamed
    unique_fd mFd;
};

}  // namespace

std::string readInput(const std::string& path) {
    const bool isStandard = path == "-";
    const unique_fd fd(isStandard ? fcntl(STDIN_FILENO, F_DUPFD_CLOEXEC, 0)
                                  : open(path.c_str(), O_RDONLY | O_CLOEXEC));
    const std::string where = isStandard ? "standard input" : path;
    if (fd.get() < 0) {
        fail("cannot open", where);
    }
    std::string bytes;
    char part[65536];
    for (;;) {
        const ssize_t count = read(fd.get(), part, sizeof(part));
        if (count == 0) {
            return bytes;
        }
        if (count < 0 && errno != EINTR) {
            fail("cannot read", where);
        }
        bytes.append(part, count > 0 ? static_cast<size_t>(count) : 0);
    }
}

void writeOutput(const std::string& path, const std::string& bytes) {
    if (path == "-") {
        writeAll(STDOUT_FILENO, bytes, "standard output");
    } else if (isSpecialFile(path)) {
        writeSpecialFile(path, bytes);
    } else {
        NewFile(finalPath(path)).store(bytes);
    }
}

void warn(const std::string& what, const std::string& where) {
    std::cerr << "kelvoconf: warning: " << what << ": " << where << '\n';
}

}  // namespace kelvoconf
