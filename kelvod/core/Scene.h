#pragma once

#include <cstdint>
#include <map>
#include <string>

#include "config/ConfigNames.h"

namespace kelvo {

/** What a client or a listener asks of the scene state machine (message code 9). */
enum class ShellFittingSceneOpCode : int32_t {
    RESTORE = 0,  // back to the rollback scene; has no name of its own
    DEFAULT = 1,
    FLASH_ON = 2,
    WIRELESS_CHARGE = 3,
    SCREEN_FOLD = 4,
};

/** Scene code → name of the model set. */
inline const std::map<int32_t, std::string> kSceneNames = {
        {static_cast<int32_t>(ShellFittingSceneOpCode::DEFAULT), scene::kDefault},
        {static_cast<int32_t>(ShellFittingSceneOpCode::FLASH_ON), scene::kFlashOn},
        {static_cast<int32_t>(ShellFittingSceneOpCode::WIRELESS_CHARGE), scene::kWirelessCharge},
        {static_cast<int32_t>(ShellFittingSceneOpCode::SCREEN_FOLD), scene::kScreenFold},
};

}  // namespace kelvo
