#pragma once

#include <cstdint>
#include <map>
#include <string>

namespace kelvo {

/** What a client or a listener asks of the scene state machine (message code 9). */
enum class ShellFittingSceneOpCode : int32_t {
    RESTORE = 0,  // back to the rollback scene; has no name of its own
    DEFAULT = 1,
    FLASH_ON = 2,
    WIRELESS_CHARGE = 3,
    SCREEN_FOLD = 4,
};

/** Scene code → name of the model set. "wirless_charge" is what configurations say. */
inline const std::map<int32_t, std::string> kSceneNames = {
        {1, "default"},
        {2, "flashon"},
        {3, "wirless_charge"},
        {4, "screen_fold"},
};

}  // namespace kelvo
