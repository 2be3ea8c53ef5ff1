#include "HubClient.h"

#include <sys/socket.h>

#include <cerrno>
#include <cstring>

using android::base::unique_fd;

namespace binderhub {

namespace {

/** Far more than the state of the most processes that a hub takes. */
constexpr size_t kMaxAnswer = 64 * 1024 * 1024;

}  // namespace

std::unique_ptr<HubClient> HubClient::open(const std::string& path, std::string* error) {
    unique_fd socket = connectTo(path);
    if (socket.get() < 0) {
        *error = path + ": " + strerror(errno);
        return nullptr;
    }
    std::unique_ptr<HubClient> client(new HubClient(std::move(socket)));
    InMessage answer;
    const int status = client->ask(kHello, kProtocolVersion, {}, &answer);
    if (status == 0) {
        return client;
    }
    *error = path + ": " +
             (client->gone() ? "the hub closed the connection"
                             : "the hub refused version " + std::to_string(kProtocolVersion) +
                                       " of its protocol: " + strerror(-status));
    return nullptr;
}

int HubClient::ask(Kind kind, uint32_t value, std::span<const uint8_t> payload, InMessage* answer) {
    OutMessage question;
    question.header.kind = kind;
    question.header.value = value;
    question.payload = payload;
    if (gone() || !exchange(question, answer)) {
        disconnect();
        return -EBADF;
    }
    return answer->header.status;
}

bool HubClient::exchange(const OutMessage& question, InMessage* answer) {
    if (sendMessage(mSocket.get(), question, true) != 0) {
        return false;
    }
    int status = -EINTR;
    while (status == -EINTR) {
        status = mReceiver.receive(mSocket.get(), true, kMaxAnswer, answer);
    }
    return status == 1 && answer->header.kind == kAnswer;
}

void HubClient::disconnect() {
    mGone.store(true, std::memory_order_release);
    // The descriptor stays open, as another thread may be about to use it.
    shutdown(mSocket.get(), SHUT_RDWR);
}

int hubState(const std::string& path, std::string* json, std::string* error) {
    const std::unique_ptr<HubClient> client = HubClient::open(path, error);
    if (client == nullptr) {
        return -ECONNREFUSED;
    }
    InMessage answer;
    const int status = client->ask(kState, 0, {}, &answer);
    if (status != 0) {
        *error = path + ": the hub does not tell its state: " + strerror(-status);
        return status;
    }
    json->assign(answer.payload.begin(), answer.payload.end());
    return 0;
}

}  // namespace binderhub
