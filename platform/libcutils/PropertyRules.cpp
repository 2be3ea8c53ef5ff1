#include "PropertyRules.h"

#include <sys/system_properties.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cinttypes>

namespace properties {

namespace {

bool isLegalCharacter(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') ||
           std::string_view(".-_@:").find(c) != std::string_view::npos;
}

}  // namespace

bool isLegalName(std::string_view name) {
    return !name.empty() && name.front() != '.' && name.back() != '.' &&
           name.find("..") == std::string_view::npos && std::ranges::all_of(name, isLegalCharacter);
}

bool isReadOnly(std::string_view name) {
    return name.starts_with("ro.");
}

bool isLegalLength(std::string_view name, size_t length) {
    return length < PROP_VALUE_MAX || isReadOnly(name);
}

std::string_view valueOfText(std::string_view text) {
    text = text.substr(0, text.find('\0'));
    if (text.ends_with('\n')) {
        text.remove_suffix(1);
    }
    return text;
}

std::optional<bool> toBool(std::string_view value) {
    constexpr std::array<std::string_view, 5> kTrue{"1", "y", "yes", "on", "true"};
    constexpr std::array<std::string_view, 5> kFalse{"0", "n", "no", "off", "false"};
    if (std::ranges::find(kTrue, value) != kTrue.end()) {
        return true;
    }
    if (std::ranges::find(kFalse, value) != kFalse.end()) {
        return false;
    }
    return std::nullopt;
}

std::optional<int64_t> toInteger(const char* value, int64_t lowest, int64_t highest) {
    const int savedErrno = errno;
    errno = 0;
    char* end = nullptr;
    const intmax_t number = strtoimax(value, &end, 0);
    const bool overflowed = errno == ERANGE;
    errno = savedErrno;
    if (end == value || overflowed || number < lowest || number > highest) {
        return std::nullopt;
    }
    return number;
}

}  // namespace properties
