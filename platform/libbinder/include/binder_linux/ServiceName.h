#pragma once

#include <algorithm>
#include <string_view>

namespace android {

/** The longest name of a service (characters). */
constexpr size_t kLongestServiceName = 127;

/** Whether a service may have this name: not empty, and of letters, digits and "_-./" alone. */
inline bool isLegalServiceName(std::string_view name) {
    const auto isLegal = [](char c) {
        return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') ||
               c == '_' || c == '-' || c == '.' || c == '/';
    };
    return !name.empty() && name.size() <= kLongestServiceName &&
           std::all_of(name.begin(), name.end(), isLegal);
}

}  // namespace android
