#include "CommandReader.h"

#include <linux/android/binder.h>

namespace binderhub {

bool isCommand(uint32_t code) {
    switch (code) {
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

bool isReturn(uint32_t code) {
    return _IOC_TYPE(code) == _IOC_TYPE(BR_NOOP);
}

bool CommandReader::next(Command* command) {
    if (mRest.size() < sizeof(command->code)) {
        return false;
    }
    memcpy(&command->code, mRest.data(), sizeof(command->code));
    const std::span<const uint8_t> argument = mRest.subspan(sizeof(command->code));
    const size_t size = _IOC_SIZE(command->code);
    if (!mIsKnown(command->code) || size > argument.size()) {
        return false;
    }
    command->argument = argument.first(size);
    mRest = argument.subspan(size);
    return true;
}

}  // namespace binderhub
