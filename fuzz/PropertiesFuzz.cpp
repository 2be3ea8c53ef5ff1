// The files of system properties: name, zero byte, content as any program can leave it; then the
// same through the library.

#include <cutils/properties.h>
#include <limits.h>
#include <unistd.h>

#include <cstring>
#include <fstream>
#include <string>

#include "Input.h"
#include "PropertyRules.h"
#include "base/DeviceRoot.h"

namespace {

std::string get(const std::string& name) {
    char value[PROPERTY_VALUE_MAX];
    std::memset(value, 'x', sizeof(value));
    const int length = property_get(name.c_str(), value, "default");
    require(length >= 0 && strnlen(value, sizeof(value)) == static_cast<size_t>(length),
            "a value ends where its length says");
    return value;
}

void setAndGet(const std::string& name, const std::string& value) {
    if (property_set(name.c_str(), value.c_str()) != 0) {
        return;
    }
    const std::string stored = value.substr(0, value.find('\0'));
    const bool asItStands =
            !stored.empty() && !stored.ends_with('\n') && stored.size() < PROPERTY_VALUE_MAX;
    require(!asItStands || get(name) == stored, "a property is what it was set to");
}

void read(const std::string& name) {
    get(name);
    property_get_bool(name.c_str(), 0);
    property_get_int32(name.c_str(), 0);
    property_get_int64(name.c_str(), 0);
    property_list(
            [](const char* key, const char*, void*) {
                require(properties::isLegalName(key), "only properties are listed");
            },
            nullptr);
}

}  // namespace

void fuzzProperties(Bytes data) {
    Input input(data);
    const std::string name(textOf(input.upToZero()).substr(0, NAME_MAX));
    const std::string content(textOf(input.rest()));
    const std::string path = kelvo::deviceRoot() + "/dev/properties/" + name;
    if (!properties::isLegalName(name)) {
        require(property_set(name.c_str(), "1") != 0, "such a name is refused");
        require(get(name) == "default", "and has no value");
        return;
    }
    std::ofstream(path, std::ios::binary) << content;
    read(name);
    setAndGet(name, content);
    unlink(path.c_str());
}
