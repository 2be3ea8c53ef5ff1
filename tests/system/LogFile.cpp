#include "LogFile.h"

#include <android-base/unique_fd.h>
#include <poll.h>
#include <sys/inotify.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <fstream>

#include "support/RoleProcess.h"

namespace {

constexpr int kLookMs = 1000;  // should a change of the log not be seen

using Clock = std::chrono::steady_clock;

/** Counts a text in a log that grows. */
class LogCounter {
  public:
    LogCounter(const std::string& path, std::string text) : mStream(path), mText(std::move(text)) {}

    size_t count() {
        mStream.clear();
        mLog.append(std::istreambuf_iterator<char>(mStream), {});
        for (size_t at = mLog.find(mText); at != std::string::npos; at = mLog.find(mText)) {
            mLog.erase(0, at + 1);
            ++mCount;
        }
        mLog.erase(0, mLog.size() - std::min(mLog.size(), mText.size()));
        return mCount;
    }

  private:
    std::ifstream mStream;
    const std::string mText;
    std::string mLog;  // what may still be a part of the text
    size_t mCount = 0;
};

}  // namespace

size_t LogFile::count(const std::string& text) const {
    return LogCounter(mPath, text).count();
}

bool LogFile::holds(const std::string& text, size_t count) const {
    const android::base::unique_fd watch(inotify_init1(IN_NONBLOCK | IN_CLOEXEC));
    inotify_add_watch(watch.get(), mPath.c_str(), IN_MODIFY);
    LogCounter counter(mPath, text);
    const Clock::time_point end = Clock::now() + std::chrono::milliseconds(kBinderWorldLimitMs);
    while (counter.count() < count) {
        if (Clock::now() > end) {
            return false;
        }
        pollfd changes{watch.get(), POLLIN, 0};
        poll(&changes, 1, kLookMs);
        char events[4096];
        while (read(watch.get(), events, sizeof(events)) > 0) {
        }
    }
    return true;
}
