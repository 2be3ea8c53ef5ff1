#include "Commands.h"

namespace binderhub {

bool Commands::run(Thread& thread, InMessage& message) {
    CommandReader commands(message.commands, isCommand);
    Command command;
    while (!commands.atEnd()) {
        if (!commands.next(&command)) {
            return false;
        }
        if (!runOne(command, thread, message)) {
            ++thread.process.mistakes;
        }
        if (thread.process.broken) {
            return false;
        }
    }
    return true;
}

/** Returns whether it had an effect. */
bool Commands::runOne(const Command& command, Thread& thread, InMessage& message) {
    switch (command.code) {
        case BC_TRANSACTION:
        case BC_REPLY:
        case BC_FREE_BUFFER:
            return runTransfer(command, thread, message);
        case BC_REQUEST_DEATH_NOTIFICATION:
            return mDeaths.request(thread.process, command.as<binder_handle_cookie>());
        case BC_CLEAR_DEATH_NOTIFICATION:
            return mDeaths.clear(thread, command.as<binder_handle_cookie>());
        case BC_DEAD_BINDER_DONE:
            return mDeaths.acknowledge(thread, command.as<binder_uintptr_t>());
        case BC_REGISTER_LOOPER:
        case BC_ENTER_LOOPER:
        case BC_EXIT_LOOPER:
            return runLooper(command.code, thread);
        default:
            return runCount(command, thread.process);
    }
}

bool Commands::runTransfer(const Command& command, Thread& thread, InMessage& message) {
    if (command.code == BC_FREE_BUFFER) {
        return mTransactor.freeBuffer(thread.process, command.as<binder_uintptr_t>());
    }
    const auto data = command.as<binder_transaction_data>();
    if (command.code == BC_TRANSACTION) {
        mTransactor.call(thread, data, message);
    } else {
        mTransactor.reply(thread, data, message);
    }
    return true;
}

bool Commands::runCount(const Command& command, Process& process) {
    switch (command.code) {
        case BC_INCREFS:
            return mReferences.add(process, command.as<uint32_t>(), Strength::kWeak);
        case BC_ACQUIRE:
            return mReferences.add(process, command.as<uint32_t>(), Strength::kStrong);
        case BC_RELEASE:
            return mReferences.drop(process, command.as<uint32_t>(), Strength::kStrong);
        case BC_DECREFS:
            return mReferences.drop(process, command.as<uint32_t>(), Strength::kWeak);
        case BC_INCREFS_DONE:
            return mReferences.confirm(process, command.as<binder_ptr_cookie>(), Strength::kWeak);
        default:
            return mReferences.confirm(process, command.as<binder_ptr_cookie>(), Strength::kStrong);
    }
}

bool Commands::runLooper(uint32_t code, Thread& thread) {
    if (code == BC_REGISTER_LOOPER) {
        return registerLooper(thread);
    }
    if (code == BC_EXIT_LOOPER) {
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
