#include "sim/live/FrameworkActor.h"

#include <sys/socket.h>

#include <array>
#include <cerrno>
#include <system_error>

#include "sim/live/FrameworkProcess.h"

namespace sim {

FrameworkActor::FrameworkActor(const std::vector<std::string>& command, const std::string& root,
                               const std::string& log)
      : mLog(log) {
    std::array<int, 2> ends{};
    if (socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends.data()) != 0) {
        throw std::system_error(errno, std::generic_category(), "socketpair");
    }
    mLink.reset(ends[0]);
    const android::base::unique_fd theirs(ends[1]);
    mProcess.emplace(command, root, log, theirs.get(), theirs.get());
}

void FrameworkActor::start(size_t action) {
    const std::string line = std::to_string(action) + "\n";
    send(mLink.get(), line.data(), line.size(), MSG_NOSIGNAL);  // its end is seen elsewhere
}

bool FrameworkActor::takeLines(const std::function<void(const std::string& event)>& onEvent) {
    std::array<char, 4096> bytes;
    ssize_t size = 0;
    while ((size = recv(mLink.get(), bytes.data(), bytes.size(), MSG_DONTWAIT)) > 0) {
        mPending.append(bytes.data(), static_cast<size_t>(size));
    }
    bool done = false;
    size_t begin = 0;
    for (size_t end = 0; (end = mPending.find('\n', begin)) != std::string::npos; begin = end + 1) {
        const std::string line = mPending.substr(begin, end - begin);
        if (line == kFrameworkActionDone) {
            done = true;
        } else {
            onEvent(line);
        }
    }
    mPending.erase(0, begin);
    return done;
}

}  // namespace sim
