#include "Files.h"

#include <errno.h>
#include <fcntl.h>
#include <string.h>
#include <sys/stat.h>
#include <unistd.h>

#include <android-base/unique_fd.h>

#include <iostream>

#include "Failure.h"
#include "common/NewFile.h"

using android::base::unique_fd;

namespace kelvoconf {

namespace {

constexpr mode_t kFileMode = 0644;

[[noreturn]] void fail(const char* what, const std::string& where) {
    if (errno == EPIPE) {
        throw command_line::ReaderGone();
    }
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

void writeSpecialFile(const std::string& path, const std::string& bytes) {
    const unique_fd fd(open(path.c_str(), O_WRONLY | O_CLOEXEC));
    if (fd.get() < 0) {
        fail("cannot open", path);
    }
    writeAll(fd.get(), bytes, path);
}

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
    } else if (common::isWrittenInPlace(path)) {
        writeSpecialFile(path, bytes);
    } else {
        common::NewFile file(path);
        writeAll(file.fd(), bytes, path);
        if (fchmod(file.fd(), kFileMode) != 0) {
            fail("cannot write", path);
        }
        file.finish();
    }
}

void warn(const std::string& what, const std::string& where) {
    std::cerr << "kelvoconf: warning: " << what << ": " << where << '\n';
}

}  // namespace kelvoconf
