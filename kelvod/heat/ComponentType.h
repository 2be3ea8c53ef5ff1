#pragma once

#include <cstdint>
#include <map>

/**
 * The parts of the phone that heat is attributed to. The values are written into samples and index
 * the center's table.
 */
enum ComponentType : int32_t {
    CPU = 0,
    DISPLAY = 1,
    CELLULAR = 2,
    WIFI = 3,
    GPU = 4,
    AMBIENT = 5,
};

inline constexpr int32_t kComponentTypes = 6;

/** Those whose samples a configured coefficient turns into m°C; the air's are m°C. */
inline constexpr ComponentType kPowerComponents[] = {CPU, DISPLAY, CELLULAR, WIFI, GPU};

/** Names of the types in reports, big data and the configuration; never changed. */
inline const std::map<ComponentType, const char*> kComponentNames = {
        {CPU, "cpu"},   {DISPLAY, "display"}, {CELLULAR, "cellular"},
        {WIFI, "wifi"}, {GPU, "gpu"},         {AMBIENT, "ambient"},
};

/** The name of a type, or null for a value that is none. Thread-safe. */
inline const char* componentName(int32_t type) {
    const auto found = kComponentNames.find(static_cast<ComponentType>(type));
    return found != kComponentNames.end() ? found->second : nullptr;
}
