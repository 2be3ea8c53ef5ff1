#pragma once

#include <binder/IBinder.h>
#include <json/value.h>
#include <utils/StrongPointer.h>

#include <cstdint>
#include <string>

namespace kelvo {

/** Codes of the message loop: the single definition of them for the daemon. */
enum MessageCode : int32_t {
    MSG_SHELL_TEMP_CHANGED = 1,
    MSG_THERMAL_STATE = 2,  // posted, never handled: status changes travel as 6 and 10
    MSG_RELOAD_CONFIG = 3,
    MSG_REGISTER_CLIENT = 4,
    MSG_UNREGISTER_CLIENT = 5,
    MSG_NOTIFY_THERMAL_STATUS = 6,
    MSG_COLLECT_BIG_DATA = 7,
    MSG_LOAD_FLASH_SCENE = 8,
    MSG_SCENE_OP_CODE = 9,
    MSG_BROADCAST_THERMAL = 10,
    MSG_SCREEN_FOLD = 11,  // no sender in this daemon
    MSG_NOTIFY_AMBIENT = 12,
    MSG_NOTIFY_HEAT_SOURCE = 13,
    MSG_CHARGE_STATE = 14,
};

/** One request to the message loop. A sender sets `what` and the fields its code needs. */
struct KelvoMessage {
    int32_t what = -1;
    int32_t iParam = -1;                   // uid (4, 5), thermal status (10, 13)
    int32_t iParam2 = -1;                  // read by no handler; part of the message's shape
    int32_t iValue = -1;                   // temperature (m°C), status, op code or flag
    std::string sValue;                    // day for 7
    Json::Value jValue;                    // read by no handler; part of the message's shape
    android::sp<android::IBinder> binder;  // listener (4, 5)
};

}  // namespace kelvo
