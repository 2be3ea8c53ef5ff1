// What a process asks on its process connection.

#include <linux/android/binder.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstring>

#include "Descriptors.h"
#include "Hub.h"
#include "HubState.h"
#include "Limits.h"

using android::base::unique_fd;

namespace binderhub {

/** Returns whether the process may stay. */
bool Hub::runProcessMessage(Process& process) {
    if (process.greeted) {
        return runRequest(process);
    }
    if (mMessage.header.kind != kHello) {
        return false;
    }
    process.greeted = mMessage.header.value == kProtocolVersion;
    return answer(process, process.greeted ? 0 : -EPROTONOSUPPORT);
}

bool Hub::runRequest(Process& process) {
    switch (mMessage.header.kind) {
        case kNewThread:
            return addThread(process);
        case kSetMaxThreads:
            process.maxThreads = mMessage.header.value;
            return answer(process, 0);
        case kBecomeContextManager:
            return mMessage.payload.size() == sizeof(flat_binder_object) &&
                   answer(process, becomeManager(process));
        case kState: {
            if (process.uid != geteuid() && process.uid != 0) {
                return answer(process, -EPERM);
            }
            const std::string text = stateOf(*this);
            return answer(process, 0, {reinterpret_cast<const uint8_t*>(text.data()), text.size()});
        }
        case kNodeInfo:
            return answerNodeInfo(process);
        default:
            return false;
    }
}

/** For the context manager, which tells services whether they have clients. */
bool Hub::answerNodeInfo(Process& process) const {
    const Node* const manager = mDriver.references.manager();
    if (manager == nullptr || manager->owner != &process) {
        return answer(process, -EPERM);
    }
    binder_node_info_for_ref info = {};
    info.handle = mMessage.header.value;
    const Ref* const ref = References::find(process, info.handle, Strength::kStrong);
    if (ref == nullptr) {
        return answer(process, -EINVAL);
    }
    info.strong_count = static_cast<uint32_t>(ref->node.localStrong + ref->node.strongRefs);
    info.weak_count = static_cast<uint32_t>(ref->node.localWeak);
    return answer(process, 0, {reinterpret_cast<const uint8_t*>(&info), sizeof(info)});
}

bool Hub::answer(Process& process, int status, std::span<const uint8_t> payload,
                 std::span<const int> descriptors) const {
    OutMessage message;
    message.header.kind = kAnswer;
    message.header.status = status;
    message.payload = payload;
    message.descriptors = descriptors;
    return sendMessage(process.connection.socket.get(), message, false) == 0;
}

bool Hub::addThread(Process& process) {
    if (process.threads.size() >= kMaxThreads || !mayHaveMore(process.uid, false)) {
        return answer(process, -EAGAIN);
    }
    std::array<int, 2> ends = {-1, -1};
    if (socketpair(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0, ends.data()) != 0) {
        return answer(process, -errno);
    }
    const unique_fd theirs(ends[1]);
    auto thread = std::make_unique<Thread>(process);
    thread->connection = {unique_fd(ends[0]), &process, thread.get()};
    if (!isAffordable(ends[0]) || !watch(thread->connection)) {
        return answer(process, -EMFILE);
    }
    const Thread* const key = thread.get();
    process.threads[key] = std::move(thread);
    ++mHoldings[process.uid].connections;
    return answer(process, 0, {}, std::array{theirs.get()});
}

int Hub::becomeManager(Process& process) {
    References& references = mDriver.references;
    if (references.manager() != nullptr) {
        return -EBUSY;
    }
    if (mManagerUid && *mManagerUid != process.uid) {
        return -EPERM;
    }
    flat_binder_object object;
    memcpy(&object, mMessage.payload.data(), sizeof(object));
    Node* const node = references.nodeFor(process, object);
    if (node == nullptr) {
        return -ENOMEM;
    }
    mManagerUid = process.uid;
    references.addLocal(*node, Strength::kStrong);
    references.addLocal(*node, Strength::kWeak);
    node->toldStrong = true;
    node->toldWeak = true;
    references.setManager(node);
    return 0;
}

}  // namespace binderhub
