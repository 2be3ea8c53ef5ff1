#include "sim/services/ServiceProcess.h"

#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <system_error>

#include "common/JsonText.h"
#include "sim/process/ServeWait.h"
#include "sim/services/ActionLine.h"

namespace sim {

namespace {

/** Bytes that have come; false when none will come any more. */
bool receive(int fd, std::string* text) {
    std::array<char, 4096> bytes{};
    const ssize_t got = recv(fd, bytes.data(), bytes.size(), MSG_DONTWAIT);
    if (got > 0) {
        text->append(bytes.data(), static_cast<size_t>(got));
    }
    return got > 0 || (got < 0 && (errno == EAGAIN || errno == EINTR));
}

/** An event as toJsonLine() writes it; the order of members is lost but for the first two. */
std::optional<Event> parseEvent(const std::string& line) {
    const auto root = common::parseJson(line);
    if (!root || !root->isObject() || !(*root)["event"].isString()) {
        return std::nullopt;
    }
    Event event{0, (*root)["event"].asString(), {}};
    for (const std::string& name : root->getMemberNames()) {
        if (name != "t" && name != "event") {
            event.members.emplace_back(name, (*root)[name]);
        }
    }
    return event;
}

}  // namespace

ServiceProcess::ServiceProcess(const Place& place, const ServiceKind& kind,
                               const ServiceContext& context)
      : mContext(context) {
    std::array<int, 2> ends{};
    if (socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends.data()) != 0) {
        throw std::system_error(errno, std::generic_category(), "socketpair");
    }
    mLink.reset(ends[0]);
    const android::base::unique_fd other(ends[1]);
    const std::string log = place.logs + "/service-" + kind.name + ".log";
    mProcess.emplace(std::vector<std::string>{place.program, kind.name}, place.root, log,
                     other.get(), other.get());
    // What was set before it was there. Nobody calls it yet, so nobody hears of a change.
    for (const Deed& deed : mContext.values.get().asDeeds()) {
        perform(deed);
    }
    send(kServeCommand);
    waitUntilReady(kind.name, log);
}

void ServiceProcess::waitUntilReady(const std::string& name, const std::string& log) {
    const ServeWait wait;
    std::string line;
    pollfd fd{mLink.get(), POLLIN, 0};
    while (line != kServiceReady) {
        if (takeLine(&line)) {
            handle(line);  // a client may be faster than the word that it is ready
        } else if (poll(&fd, 1, wait.leftMs()) <= 0 || !receive(mLink.get(), &mPending)) {
            wait.refuse("the service " + name, *mProcess, log);
        }
    }
}

bool ServiceProcess::takeLine(std::string* line) {
    const size_t end = mPending.find('\n');
    if (end == std::string::npos) {
        return false;
    }
    *line = mPending.substr(0, end);
    mPending.erase(0, end + 1);
    return true;
}

void ServiceProcess::takeEvents() {
    pollfd fd{mLink.get(), POLLIN, 0};
    while (poll(&fd, 1, 0) == 1 && receive(mLink.get(), &mPending)) {
    }
    for (std::string line; takeLine(&line);) {
        handle(line);
    }
}

void ServiceProcess::handle(const std::string& line) {
    if (line == kServiceClient) {
        mContext.onClient();
    } else if (auto event = parseEvent(line)) {
        mContext.onEvent(std::move(*event));
    }
}

void ServiceProcess::perform(const Deed& deed) {
    send(toActionLine(deed));
}

// A service that somebody killed hears nothing, like its clients.
void ServiceProcess::send(std::string line) {
    line += '\n';
    for (size_t sent = 0; sent < line.size();) {
        const ssize_t put =
                ::send(mLink.get(), line.data() + sent, line.size() - sent, MSG_NOSIGNAL);
        if (put <= 0) {
            return;
        }
        sent += static_cast<size_t>(put);
    }
}

}  // namespace sim
