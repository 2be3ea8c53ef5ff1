#include "HubDriver.h"

#include <cerrno>
#include <cstring>
#include <span>

namespace android {

namespace {

/** A channel of this thread, and the next one: most often there is one driver in a process. */
struct ThreadChannel {
    const HubDriver* driver;
    HubDriverChannel channel;
    ThreadChannel* next;
};

// A bare pointer, because libbinder calls exitThread() when it takes a thread's state down, which
// is later than the destructors of thread-local objects.
thread_local ThreadChannel* tChannels = nullptr;

/** Buffers are this process's own: also without a hub they are free once they are given back. */
void freeBuffers(const binder_write_read& exchange) {
    // The driver's format holds pointers as numbers.
    std::span<const uint8_t> commands = {
            reinterpret_cast<const uint8_t*>(  // NOLINT(performance-no-int-to-ptr)
                    static_cast<uintptr_t>(exchange.write_buffer + exchange.write_consumed)),
            exchange.write_size - exchange.write_consumed};
    HubDriverWriter writer;
    status_t status = OK;
    while (status == OK && !commands.empty()) {
        commands = commands.subspan(writer.take(commands, &status));
    }
}

}  // namespace

HubDriver::HubDriver(std::string name, std::unique_ptr<binderhub::HubClient> process)
      : mName(std::move(name)), mProcess(std::move(process)) {}

HubDriver::~HubDriver() {
    HubDriver::exitThread();
}

status_t HubDriver::writeRead(binder_write_read* exchange, bool readsNext) {
    HubDriverChannel* mine = nullptr;
    const status_t status = channel(&mine);
    if (status != OK) {
        freeBuffers(*exchange);  // they come no second time
        return status;
    }
    return mine->writeRead(exchange, readsNext);
}

status_t HubDriver::setMaxThreads(uint32_t count) {
    binderhub::InMessage answer;
    const AutoMutex lock(mAskLock);
    return askLocked(binderhub::kSetMaxThreads, count, {}, &answer);
}

status_t HubDriver::becomeContextManager(const flat_binder_object& object) {
    binderhub::InMessage answer;
    const auto* bytes = reinterpret_cast<const uint8_t*>(&object);
    const AutoMutex lock(mAskLock);
    return askLocked(binderhub::kBecomeContextManager, 0, {bytes, sizeof(object)}, &answer);
}

ssize_t HubDriver::strongReferences(uint32_t handle) {
    binderhub::InMessage answer;
    const AutoMutex lock(mAskLock);
    const status_t status = askLocked(binderhub::kNodeInfo, handle, {}, &answer);
    binder_node_info_for_ref info;
    if (status != OK || answer.payload.size() != sizeof(info)) {
        return status != OK ? status : -EPROTO;
    }
    memcpy(&info, answer.payload.data(), sizeof(info));
    return info.strong_count;
}

void HubDriver::exitThread() {
    for (ThreadChannel** link = &tChannels; *link != nullptr; link = &(*link)->next) {
        if ((*link)->driver == this) {
            const std::unique_ptr<ThreadChannel> gone(*link);
            *link = gone->next;
            return;
        }
    }
}

int HubDriver::pollDescriptor() {
    HubDriverChannel* mine = nullptr;
    status_t status = channel(&mine);
    if (status == OK) {
        status = mine->awaitReturns();
    }
    return status == OK ? mine->descriptor() : status;
}

status_t HubDriver::askLocked(binderhub::Kind kind, uint32_t value,
                              std::span<const uint8_t> payload, binderhub::InMessage* answer) {
    return mProcess->ask(kind, value, payload, answer);
}

status_t HubDriver::channel(HubDriverChannel** channel) {
    if (mProcess->gone()) {
        return -EBADF;
    }
    for (ThreadChannel* mine = tChannels; mine != nullptr; mine = mine->next) {
        if (mine->driver == this) {
            *channel = &mine->channel;
            return OK;
        }
    }
    return openChannel(channel);
}

status_t HubDriver::openChannel(HubDriverChannel** channel) {
    binderhub::InMessage answer;
    const AutoMutex lock(mAskLock);
    const status_t status = askLocked(binderhub::kNewThread, 0, {}, &answer);
    if (status != OK) {
        return status;
    }
    if (answer.descriptors.size() != 1) {
        return answer.descriptorsLost ? -EMFILE : -EPROTO;
    }
    tChannels = new ThreadChannel{
            this, HubDriverChannel(std::move(answer.descriptors.front()), *mProcess), tChannels};
    *channel = &tChannels->channel;
    return OK;
}

std::unique_ptr<BinderDriver> openHubDriver(const std::string& socket, std::string* error) {
    std::unique_ptr<binderhub::HubClient> process = binderhub::HubClient::open(socket, error);
    if (process == nullptr) {
        return nullptr;
    }
    return std::make_unique<HubDriver>(socket, std::move(process));
}

}  // namespace android
