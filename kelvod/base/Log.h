#pragma once

#include <android/log.h>
#include <cutils/properties.h>

#include <cstdint>

namespace kelvo {

inline constexpr char kLogTag[] = "kelvo";

/**
 * Level of the property "persist.sys.kelvo.loglevel": 0 prints error lines, 1 info lines too, 2
 * debug lines too, a negative level nothing. Each source unit has its own copy, set while the
 * program is loaded, so a change of the property needs a restart.
 */
[[maybe_unused]] static const int32_t sLogLevel =
        property_get_int32("persist.sys.kelvo.loglevel", 0);

}  // namespace kelvo

/** The one gate of all log lines: arguments are evaluated and formatted only when printed. */
#define KELVO_LOG(minLevel, priority, ...)                                         \
    do {                                                                           \
        if (__builtin_expect(::kelvo::sLogLevel >= (minLevel), (minLevel) == 0)) { \
            __android_log_print(priority, ::kelvo::kLogTag, __VA_ARGS__);          \
        }                                                                          \
    } while (false)

#define KLOGE(...) KELVO_LOG(0, ANDROID_LOG_ERROR, __VA_ARGS__)
#define KLOGI(...) KELVO_LOG(1, ANDROID_LOG_INFO, __VA_ARGS__)
#define KLOGD(...) KELVO_LOG(2, ANDROID_LOG_DEBUG, __VA_ARGS__)
