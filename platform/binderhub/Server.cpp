#include "Server.h"

#include <sys/signalfd.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstring>
#include <filesystem>

#include "Descriptors.h"
#include "Hub.h"
#include "HubSocket.h"

using android::base::unique_fd;

namespace binderhub {

namespace {

/** Any user may connect; what he may do is for those whom he calls to decide. */
constexpr mode_t kSocketMode = 0666;

std::string problem() {
    return errno == EADDRINUSE ? "a hub answers there already" : strerror(errno);
}

unique_fd endingSignals() {
    sigset_t signals;
    sigemptyset(&signals);
    sigaddset(&signals, SIGTERM);
    sigaddset(&signals, SIGINT);
    if (sigprocmask(SIG_BLOCK, &signals, nullptr) != 0) {
        return {};
    }
    return unique_fd(signalfd(-1, &signals, SFD_CLOEXEC));
}

/** Which file stands there, to know one's own again. */
std::pair<dev_t, ino_t> identity(const std::string& path) {
    struct stat state = {};
    return lstat(path.c_str(), &state) == 0 ? std::pair(state.st_dev, state.st_ino)
                                            : std::pair(dev_t{0}, ino_t{0});
}

}  // namespace

std::string serve(const std::string& path) {
    std::error_code ignored;  // listening fails in turn
    std::filesystem::create_directories(std::filesystem::path(path).parent_path(), ignored);
    raiseDescriptorLimit();
    unique_fd signals = endingSignals();
    Hub hub;
    if (signals.get() < 0 || !hub.isValid()) {
        return problem();
    }
    unique_fd listener = listenAt(path);
    if (listener.get() < 0 || chmod(path.c_str(), kSocketMode) != 0) {
        return problem();
    }
    const auto own = identity(path);
    hub.stopOn(std::move(signals));
    hub.listen(std::move(listener));
    while (hub.step(-1)) {
    }
    if (identity(path) == own) {
        unlink(path.c_str());
    }
    return "";
}

}  // namespace binderhub
