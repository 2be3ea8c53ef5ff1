#include "config/ConfigFiles.h"

#include <android-base/unique_fd.h>
#include <errno.h>
#include <fcntl.h>
#include <stdlib.h>
#include <string.h>
#include <sys/stat.h>
#include <unistd.h>

#include <memory>
#include <utility>

#include "base/DeviceRoot.h"
#include "base/FreeDeleter.h"
#include "base/Log.h"
#include "config/ConfigCipher.h"

namespace kelvo {

namespace {

/** Opens a candidate; the descriptor is invalid when the candidate is to be passed over. */
android::base::unique_fd openCandidate(const std::string& path, struct stat* info) {
    const std::string hostPath = deviceRoot() + path;
    KLOGD("Load config file %s", path.c_str());
    if (access(hostPath.c_str(), R_OK) != 0) {
        KLOGD("Cann't access file: %s", path.c_str());
        return {};
    }
    android::base::unique_fd fd(open(hostPath.c_str(), O_RDONLY | O_CLOEXEC));
    if (fd.get() < 0) {
        KLOGE("open %s failed(%s), continue", path.c_str(), strerror(errno));
        return {};
    }
    if (fstat(fd.get(), info) != 0) {
        KLOGE("stat %s failed(%s), continue", path.c_str(), strerror(errno));
        return {};
    }
    return info->st_size > 0 ? std::move(fd) : android::base::unique_fd();
}

/** The newest of the files shown to it. */
class NewestFile {
  public:
    /** 0, or -1 when there is no memory for the file. */
    int consider(const std::string& path, int index) {
        struct stat info = {};
        const android::base::unique_fd fd = openCandidate(path, &info);
        if (fd.get() < 0) {
            return 0;
        }
        KLOGD("Stat config file mtime %lld", static_cast<long long>(info.st_mtime));
        if (info.st_mtime < mTime) {
            KLOGD("It's an older config, skip.");
            return 0;
        }
        if (mBuffer) {
            KLOGD("It's a newer config, read it");
            mBuffer.reset();
        }
        mIndex = index;
        mTime = info.st_mtime;
        mSize = static_cast<size_t>(info.st_size);
        return read(fd.get());
    }

    bool isHeld() const { return mBuffer != nullptr; }
    int index() const { return mIndex; }
    std::string bytes() const { return {mBuffer.get(), mSize}; }

  private:
    int read(int fd) {
        mBuffer.reset(static_cast<char*>(malloc(mSize)));
        if (!mBuffer) {
            KLOGE("malloc failed(%s)", strerror(errno));
            return -1;
        }
        const ssize_t count = ::read(fd, mBuffer.get(), mSize);
        if (count < 0 || static_cast<size_t>(count) != mSize) {
            // The file stays the newest: an older one does not stand in for it.
            KLOGE("read of %ld bytes instead of %lld bytes(%s)", static_cast<long>(count),
                  static_cast<long long>(mSize), strerror(errno));
            mBuffer.reset();
        }
        return 0;
    }

    std::unique_ptr<char, FreeDeleter> mBuffer;  // null when the newest file could not be read
    size_t mSize = 0;
    int mIndex = -1;
    time_t mTime = 0;  // s since the epoch
};

}  // namespace

int getFileContents(const std::string* paths, int count, std::string& raw, std::string& json) {
    NewestFile newest;
    for (int i = 0; i < count; ++i) {
        if (newest.consider(paths[i], i) != 0) {
            return -1;
        }
    }
    if (!newest.isHeld()) {
        KLOGE("Cann't find valid config file!");
        return -1;
    }
    const std::string& path = paths[newest.index()];
    KLOGI("Load config file(%s) suceessfully!", path.c_str());
    raw = newest.bytes();
    if (decryptConfig(raw, json) != 0) {
        KLOGE("Read config file failed!");
        return -1;
    }
    KLOGD("decryptConfig: %s success", path.c_str());
    return newest.index();
}

}  // namespace kelvo
