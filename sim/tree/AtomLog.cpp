#include "sim/tree/AtomLog.h"

#include <fcntl.h>
#include <sys/inotify.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <system_error>

#include "common/JsonText.h"

namespace sim {

namespace {

constexpr char kPath[] = "/data/zstats/atoms.jsonl";

void takeLine(const std::string& line, const AtomLog::Take& take) {
    if (const auto record = common::parseJson(line)) {
        take((*record)["id"].asInt(), (*record)["text"].asString(), (*record)["value"].asInt());
    }
}

}  // namespace

AtomLog::AtomLog(DeviceTree& tree) {
    tree.setNode(kPath, "");
    const std::string path = tree.hostPath(kPath);
    mFd = open(path.c_str(), O_RDONLY | O_CLOEXEC);
    mWatch = inotify_init1(IN_NONBLOCK | IN_CLOEXEC);
    if (mFd < 0 || mWatch < 0 || inotify_add_watch(mWatch, path.c_str(), IN_MODIFY) < 0) {
        throw std::system_error(errno, std::generic_category(), path);
    }
}

AtomLog::~AtomLog() {
    close(mFd);
    close(mWatch);
}

void AtomLog::takeRecords(const Take& take) {
    std::array<char, 4096> bytes;
    const auto fill = [&bytes](int fd) { return read(fd, bytes.data(), bytes.size()); };
    constexpr auto kFull = static_cast<ssize_t>(sizeof(bytes));
    // The notices first, so that none is lost of a record that comes in between.
    while (fill(mWatch) == kFull) {
    }
    for (ssize_t got = kFull; got == kFull;) {
        got = fill(mFd);
        mPending.append(bytes.data(), static_cast<size_t>(std::max<ssize_t>(got, 0)));
    }
    size_t start = 0;
    for (size_t end = mPending.find('\n'); end != std::string::npos;
         end = mPending.find('\n', start)) {
        takeLine(mPending.substr(start, end - start), take);
        start = end + 1;
    }
    mPending.erase(0, start);
}

}  // namespace sim
