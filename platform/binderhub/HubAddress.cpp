#include <fcntl.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>

#include "HubSocket.h"

using android::base::unique_fd;

namespace binderhub {

namespace {

struct Address {
    sockaddr_un name = {};
    unique_fd folder;  // keeps a name below /proc/self/fd alive

    const sockaddr* get() const { return reinterpret_cast<const sockaddr*>(&name); }
};

bool setName(const std::string& name, Address* address) {
    if (name.empty() || name.size() >= sizeof(address->name.sun_path)) {
        errno = ENAMETOOLONG;
        return false;
    }
    address->name.sun_family = AF_UNIX;
    memcpy(address->name.sun_path, name.c_str(), name.size() + 1);
    return true;
}

/** A path that is too long for a socket's name is reached through its folder's descriptor. */
bool setAddress(const std::string& path, Address* address) {
    const size_t slash = path.rfind('/');
    if (path.size() < sizeof(address->name.sun_path) || slash == std::string::npos) {
        return setName(path, address);
    }
    const std::string folder = path.substr(0, slash + 1);
    address->folder.reset(open(folder.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC));
    return address->folder.get() >= 0 &&
           setName("/proc/self/fd/" + std::to_string(address->folder.get()) + path.substr(slash),
                   address);
}

unique_fd newSocket() {
    return unique_fd(socket(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0));
}

bool isSocket(const std::string& path) {
    struct stat state = {};
    return lstat(path.c_str(), &state) == 0 && S_ISSOCK(state.st_mode);
}

/** Whether the path is free now; errno says why not. */
bool removeStale(const std::string& path) {
    if (!isSocket(path)) {
        return true;  // bind() complains when something else stands there
    }
    if (connectTo(path).get() >= 0) {
        errno = EADDRINUSE;
        return false;
    }
    return errno == ECONNREFUSED && unlink(path.c_str()) == 0;
}

}  // namespace

std::string defaultSocket() {
    const char* const root = getenv("KELVO_ROOT");
    return std::string(root == nullptr ? "" : root) + "/dev/binderhub";
}

unique_fd connectTo(const std::string& path) {
    Address address;
    unique_fd connection = newSocket();
    if (connection.get() < 0 || !setAddress(path, &address) ||
        TEMP_FAILURE_RETRY(connect(connection.get(), address.get(), sizeof(address.name))) != 0) {
        return {};
    }
    return connection;
}

unique_fd listenAt(const std::string& path) {
    Address address;
    unique_fd server = newSocket();
    if (server.get() < 0 || !setAddress(path, &address) || !removeStale(path) ||
        bind(server.get(), address.get(), sizeof(address.name)) != 0 ||
        listen(server.get(), SOMAXCONN) != 0) {
        return {};
    }
    return server;
}

}  // namespace binderhub
