#include "sim/tree/ShellTempNode.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <system_error>

#include "sim/scenario/PhonePaths.h"
#include "sim/tree/PhoneTree.h"

namespace sim {

ShellTempNode::ShellTempNode(DeviceTree& tree) : mTree(tree) {}

ShellTempNode::~ShellTempNode() {
    if (mFd >= 0) {
        close(mFd);
    }
}

void ShellTempNode::setPresent(bool present) {
    if (present == (mFd >= 0)) {
        return;
    }
    const std::string path = mTree.hostPath(kShellTempPath);
    if (!present) {
        close(mFd);
        mFd = -1;
        mPending.clear();
        unlink(path.c_str());
        return;
    }
    mTree.addFolder("/proc");
    unlink(path.c_str());
    if (mkfifo(path.c_str(), 0644) != 0) {
        throw std::system_error(errno, std::generic_category(), path);
    }
    // Open for writing too: the pipe then never ends, and the daemon's open() never waits.
    mFd = open(path.c_str(), O_RDWR | O_NONBLOCK | O_CLOEXEC);
    if (mFd < 0) {
        throw std::system_error(errno, std::generic_category(), path);
    }
}

void ShellTempNode::takeLines(const std::function<void(std::string_view)>& take) {
    std::array<char, 4096> buffer;
    ssize_t size = mFd >= 0 ? static_cast<ssize_t>(buffer.size()) : 0;
    while (size == static_cast<ssize_t>(buffer.size())) {  // a pipe gives all it has
        size = read(mFd, buffer.data(), buffer.size());
        mPending.append(buffer.data(), static_cast<size_t>(std::max<ssize_t>(size, 0)));
    }
    size_t begin = 0;
    size_t end = 0;
    while ((end = mPending.find('\n', begin)) != std::string::npos) {
        take(std::string_view(mPending).substr(begin, end - begin));
        begin = end + 1;
    }
    mPending.erase(0, begin);
}

}  // namespace sim
