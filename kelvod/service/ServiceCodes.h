#pragma once

#include <cstdint>

namespace kelvo {

/** Transaction codes of the service; only the numbers cross the interface. */
enum ServiceCode : uint32_t {
    REGISTER_CLIENT = 1,
    UNREGISTER_CLIENT = 2,
    GET_THERMAL_STATUS = 4,
    GET_THERMAL_CONFIG = 5,
    SET_DYNAMIC_CONFIG = 6,
    GET_VERSION = 9,
    GET_BIG_DATA = 10,
    RELOAD_CONFIG = 11,
    SET_SCREEN_STATUS = 12,
    NOTIFY_THERMAL_STATUS = 15,
    PEEK_BIG_DATA = 16,
    GET_CURRENT_TEMP = 17,
    SET_CURRENT_PACKAGE = 18,
    SET_LIGHT_LAMP_STATUS = 19,
    GET_SPECIFIED_ZONE_TEMPS = 20,
    GET_ALL_SHELL_TEMPS = 21,
    SHELL_TEMP_AND_TYPE = 22,
    IS_NEW_SAFETY_TYPE = 23,
    SET_SCREEN_FOLD_STATUS = 24,
    GET_AMBIENT_TEMP = 25,
    CPU_LIMIT_PROCEESES = 101,
    COMPONENT_HEAT_TEST = 102,
    SET_WIFI_INFO = 103,
    SET_NETWORK_INFO = 104,
    SET_NETWORK_SPEED_INFO = 105,
    GET_COMPONENTS_HEAT_DETAIL = 106,
};

/** Before each of the three lists of SET_DYNAMIC_CONFIG: a list follows. */
inline constexpr int32_t kListFollows = 21;

}  // namespace kelvo
