#include "RelayFloor.h"

#include <sys/epoll.h>
#include <sys/socket.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdint>
#include <system_error>
#include <utility>

namespace bench {

namespace {

using android::base::unique_fd;

constexpr size_t kLongest = std::max(RelayFloor::kQuestionSize, RelayFloor::kAnswerSize);
using Datagram = std::array<char, kLongest>;

std::pair<unique_fd, unique_fd> socketPair() {
    std::array<int, 2> ends{};
    if (socketpair(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0, ends.data()) != 0) {
        throw std::system_error(errno, std::generic_category(), "socketpair");
    }
    return {unique_fd(ends[0]), unique_fd(ends[1])};
}

bool passOn(int from, int to) {
    Datagram bytes;
    const ssize_t size = recv(from, bytes.data(), bytes.size(), 0);
    return size > 0 && send(to, bytes.data(), static_cast<size_t>(size), MSG_NOSIGNAL) == size;
}

int relay(int caller, int echo) {
    const unique_fd epoll(epoll_create1(EPOLL_CLOEXEC));
    for (const int fd : {caller, echo}) {
        epoll_event event{};
        event.events = EPOLLIN;
        event.data.fd = fd;
        epoll_ctl(epoll.get(), EPOLL_CTL_ADD, fd, &event);
    }
    std::array<epoll_event, 2> ready{};
    while (true) {
        const int count = epoll_wait(epoll.get(), ready.data(), ready.size(), -1);
        for (int i = 0; i < count; ++i) {
            const int from = ready[static_cast<size_t>(i)].data.fd;
            if (!passOn(from, from == caller ? echo : caller)) {
                return 1;
            }
        }
    }
}

int answerAll(int socket) {
    Datagram bytes{};
    while (recv(socket, bytes.data(), bytes.size(), 0) > 0 &&
           send(socket, bytes.data(), RelayFloor::kAnswerSize, MSG_NOSIGNAL) > 0) {
    }
    return 1;
}

}  // namespace

RelayFloor::RelayFloor() {
    auto [ours, callerSide] = socketPair();
    auto [echoSide, theirs] = socketPair();
    mSocket = std::move(ours);
    const int caller = callerSide.get();
    const int echo = echoSide.get();
    const int answerer = theirs.get();
    mRelay = std::make_unique<ForkedProcess>([=] { return relay(caller, echo); });
    mEcho = std::make_unique<ForkedProcess>([=] { return answerAll(answerer); });
}

bool RelayFloor::roundTrip() const {
    Datagram bytes{};
    return send(mSocket.get(), bytes.data(), kQuestionSize, MSG_NOSIGNAL) > 0 &&
           recv(mSocket.get(), bytes.data(), bytes.size(), 0) == kAnswerSize;
}

}  // namespace bench
