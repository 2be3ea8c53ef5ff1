#pragma once

#include <android-base/unique_fd.h>

#include <string>

namespace common {

/**
 * A file that takes the place of another, or of none, once all of it is written: readers see the
 * old one or the new one. An unfinished one leaves nothing behind, on most file systems not even
 * when the program is killed. A link is followed: what it names is replaced. Not thread-safe.
 * Failures are std::runtime_error, "cannot … (reason): path".
 */
class NewFile {
  public:
    explicit NewFile(const std::string& path);
    ~NewFile();
    NewFile(const NewFile&) = delete;
    NewFile& operator=(const NewFile&) = delete;

    /** To write to. */
    int fd() const { return mFd.get(); }
    /** Puts it in its place. Its bytes are on the disk by then. */
    void finish();

  private:
    [[noreturn]] void fail(const char* what) const;
    void link();

    const std::string mPath;  // to replace
    const std::string mName;  // of its own, beside that
    bool mIsNamed = false;
    android::base::unique_fd mFd;
};

/** True for what is written to as it stands: a device, a pipe, a descriptor's name. */
bool isWrittenInPlace(const std::string& path);

}  // namespace common
