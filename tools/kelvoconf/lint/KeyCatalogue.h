#pragma once

#include <json/value.h>

#include <string>
#include <vector>

namespace kelvo::lint {

enum class KeyType {
    OBJECT,
    OBJECT_OR_ARRAY,
    ARRAY,
    TEXT,    // or what jsoncpp converts to one: numbers and truth values
    INT,     // 32 bits
    UINT,    // 32 bits
    NUMBER,  // whole or not
};

/** In the path of a key: any name. */
inline constexpr char kAnyName[] = "*";
/** In the path of a key: each of the ambient scenes. */
inline constexpr char kAnyAmbient[] = "{ambient}";

/** One key that the daemon reads. */
struct KeyEntry {
    /** Names of members, from the top level; kAnyName and kAnyAmbient stand for several. */
    std::vector<std::string> path;
    KeyType type;
    std::string unit;      // empty: none
    std::string fallback;  // what holds without the key; empty: it is told at the key above
    std::string reader;    // who reads it, what for
    /** What the daemon does with a value of another type; empty: a rule of its own says it. */
    std::string otherwise;
    /** How others would spell a key that is spelled wrong on purpose; empty: like this. */
    std::string rightSpelling = {};
};

/** Every key that the daemon reads. Override sections have the same keys again. */
const std::vector<KeyEntry>& keyCatalogue();

/** The entry for a path of member names; null when the daemon reads no such key. */
const KeyEntry* findKey(const std::vector<std::string>& path);

/** The names that the daemon reads below a path of member names; "*" is not among them. */
std::vector<std::string> namesBelow(const std::vector<std::string>& path);

/** Whether a value is of the type. */
bool hasType(const Json::Value& value, KeyType type);

/** "an array", "a whole number": for messages. */
const char* typeText(KeyType type);

/** Whether a scene's models estimate the ambient temperature. */
bool isAmbientScene(const std::string& name);

}  // namespace kelvo::lint
