#include "Commands.h"

#include <cstring>

namespace binderhub {

namespace {

template <typename T>
T parameterAs(const uint8_t* parameter) {
    T value;
    memcpy(&value, parameter, sizeof(value));
    return value;
}

bool isKnown(uint32_t command) {
    switch (command) {
        case BC_TRANSACTION:
        case BC_REPLY:
        case BC_FREE_BUFFER:
        case BC_INCREFS:
        case BC_ACQUIRE:
        case BC_RELEASE:
        case BC_DECREFS:
        case BC_INCREFS_DONE:
        case BC_ACQUIRE_DONE:
        case BC_REGISTER_LOOPER:
        case BC_ENTER_LOOPER:
        case BC_EXIT_LOOPER:
        case BC_REQUEST_DEATH_NOTIFICATION:
        case BC_CLEAR_DEATH_NOTIFICATION:
        case BC_DEAD_BINDER_DONE:
            return true;
        default:
            return false;
    }
}

}  // namespace

bool Commands::run(Thread& thread, InMessage& message) {
    std::span<const uint8_t> left = message.commands;
    while (!left.empty()) {
        uint32_t command = 0;
        if (left.size() < sizeof(command)) {
            return false;
        }
        memcpy(&command, left.data(), sizeof(command));
        left = left.subspan(sizeof(command));
        const size_t size = _IOC_SIZE(command);
        if (!isKnown(command) || size > left.size()) {
            return false;
        }
        if (!runOne(command, left.data(), thread, message)) {
            ++thread.process.mistakes;
        }
        if (thread.process.broken) {
            return false;
        }
        left = left.subspan(size);
    }
    return true;
}

/** Returns whether it had an effect. */
bool Commands::runOne(uint32_t command, const uint8_t* parameter, Thread& thread,
                      InMessage& message) {
    switch (command) {
        case BC_TRANSACTION:
        case BC_REPLY:
        case BC_FREE_BUFFER:
            return runTransfer(command, parameter, thread, message);
        case BC_REQUEST_DEATH_NOTIFICATION:
            return mDeaths.request(thread.process, parameterAs<binder_handle_cookie>(parameter));
        case BC_CLEAR_DEATH_NOTIFICATION:
            return mDeaths.clear(thread, parameterAs<binder_handle_cookie>(parameter));
        case BC_DEAD_BINDER_DONE:
            return mDeaths.acknowledge(thread, parameterAs<binder_uintptr_t>(parameter));
        case BC_REGISTER_LOOPER:
        case BC_ENTER_LOOPER:
        case BC_EXIT_LOOPER:
            return runLooper(command, thread);
        default:
            return runCount(command, parameter, thread.process);
    }
}

bool Commands::runTransfer(uint32_t command, const uint8_t* parameter, Thread& thread,
                           InMessage& message) {
    if (command == BC_FREE_BUFFER) {
        return mTransactor.freeBuffer(thread.process, parameterAs<binder_uintptr_t>(parameter));
    }
    const auto data = parameterAs<binder_transaction_data>(parameter);
    if (command == BC_TRANSACTION) {
        mTransactor.call(thread, data, message);
    } else {
        mTransactor.reply(thread, data, message);
    }
    return true;
}

bool Commands::runCount(uint32_t command, const uint8_t* parameter, Process& process) {
    switch (command) {
        case BC_INCREFS:
            return mReferences.add(process, parameterAs<uint32_t>(parameter), Strength::kWeak);
        case BC_ACQUIRE:
            return mReferences.add(process, parameterAs<uint32_t>(parameter), Strength::kStrong);
        case BC_RELEASE:
            return mReferences.drop(process, parameterAs<uint32_t>(parameter), Strength::kStrong);
        case BC_DECREFS:
            return mReferences.drop(process, parameterAs<uint32_t>(parameter), Strength::kWeak);
        case BC_INCREFS_DONE:
            return mReferences.confirm(process, parameterAs<binder_ptr_cookie>(parameter),
                                       Strength::kWeak);
        default:
            return mReferences.confirm(process, parameterAs<binder_ptr_cookie>(parameter),
                                       Strength::kStrong);
    }
}

bool Commands::runLooper(uint32_t command, Thread& thread) {
    if (command == BC_REGISTER_LOOPER) {
        return registerLooper(thread);
    }
    if (command == BC_EXIT_LOOPER) {
        thread.looper |= Thread::kExited;
        return true;
    }
    const bool fits = (thread.looper & Thread::kRegistered) == 0;
    thread.looper |= Thread::kEntered;
    return fits;
}

bool Commands::registerLooper(Thread& thread) {
    Process& process = thread.process;
    const bool fits = (thread.looper & Thread::kEntered) == 0 && process.requestedThreads != 0;
    if (fits) {
        --process.requestedThreads;
        ++process.startedThreads;
    }
    thread.looper |= Thread::kRegistered;
    return fits;
}

}  // namespace binderhub
