#include "sim/tree/PropertyWatch.h"

#include <sys/inotify.h>
#include <unistd.h>

#include <array>
#include <system_error>

namespace sim {

PropertyWatch::PropertyWatch(const DeviceTree& tree) : mTree(tree) {
    const std::string folder = tree.hostPath("/dev/properties");
    mFd = inotify_init1(IN_NONBLOCK | IN_CLOEXEC);
    // Properties are written by rename, so this is when a new value can be seen.
    if (mFd < 0 || inotify_add_watch(mFd, folder.c_str(), IN_MOVED_TO) < 0) {
        throw std::system_error(errno, std::generic_category(), folder);
    }
}

PropertyWatch::~PropertyWatch() {
    close(mFd);
}

void PropertyWatch::takeChanges(const Take& take) {
    alignas(inotify_event) std::array<char, 4096> buffer;
    ssize_t size = 0;
    while ((size = read(mFd, buffer.data(), buffer.size())) > 0) {
        for (ssize_t at = 0; at < size;) {
            const auto* event = reinterpret_cast<const inotify_event*>(buffer.data() + at);
            const std::string name = event->name;
            take(name, mTree.property(name).value_or(""));
            at += static_cast<ssize_t>(sizeof(inotify_event) + event->len);
        }
    }
}

void PropertyWatch::dropChanges() {
    takeChanges([](const std::string&, const std::string&) {});
}

}  // namespace sim
