#include <cutils/properties.h>

#include <cstdio>
#include <cstring>
#include <optional>
#include <string>

#include "PropertyFiles.h"
#include "PropertyRules.h"

namespace {

// No value is longer than this; a larger file is cut rather than read into memory.
constexpr size_t kLongestText = 64 * 1024;

/** What Android gives in place of a value that does not fit a caller's buffer. */
constexpr char kTooLongToGet[] = "Must use __system_property_read_callback() to read";

std::optional<std::string> readValue(const std::string& name, size_t limit) {
    const std::optional<std::string> text = properties::readText(name, limit);
    if (!text) {
        return std::nullopt;
    }
    std::string value(properties::valueOfText(*text));
    if (!properties::isLegalLength(name, value.size())) {
        return std::nullopt;
    }
    return value;
}

/** The value as it fits PROP_VALUE_MAX; empty when there is no such property. */
std::string readShortValue(const char* key) {
    if (key == nullptr || !properties::isLegalName(key)) {
        return {};
    }
    // Room for the newline of an editor and for one byte that shows the value to be too long.
    const std::optional<std::string> value = readValue(key, PROP_VALUE_MAX + 1);
    if (!value) {
        return {};
    }
    return value->size() < PROP_VALUE_MAX ? *value : kTooLongToGet;
}

int64_t getInteger(const char* key, int64_t lowest, int64_t highest, int64_t defaultValue) {
    const std::string value = readShortValue(key);
    return properties::toInteger(value.c_str(), lowest, highest).value_or(defaultValue);
}

}  // namespace

int property_get(const char* key, char* value, const char* default_value) {
    const std::string found = readShortValue(key);
    const char* text = found.empty() && default_value != nullptr ? default_value : found.c_str();
    const size_t length = strnlen(text, PROPERTY_VALUE_MAX - 1);
    memcpy(value, text, length);
    value[length] = '\0';
    return static_cast<int>(length);
}

int8_t property_get_bool(const char* key, int8_t default_value) {
    const std::optional<bool> value = properties::toBool(readShortValue(key));
    return value ? static_cast<int8_t>(*value) : default_value;
}

int64_t property_get_int64(const char* key, int64_t default_value) {
    return getInteger(key, INT64_MIN, INT64_MAX, default_value);
}

int32_t property_get_int32(const char* key, int32_t default_value) {
    return static_cast<int32_t>(getInteger(key, INT32_MIN, INT32_MAX, default_value));
}

int property_set(const char* key, const char* value) {
    if (key == nullptr || !properties::isLegalName(key)) {
        return -1;
    }
    const std::string text = value == nullptr ? "" : value;
    if (!properties::isLegalLength(key, text.size())) {
        return -1;
    }
    return properties::writeValue(key, text, !properties::isReadOnly(key)) ? 0 : -1;
}

int property_list(void (*propfn)(const char* key, const char* value, void* cookie), void* cookie) {
    for (const std::string& name : properties::listNames()) {
        if (const std::optional<std::string> value = readValue(name, kLongestText)) {
            propfn(name.c_str(), value->c_str(), cookie);
        }
    }
    return 0;
}
