#pragma once

#include <json/value.h>

#include <string>
#include <vector>

namespace kelvo {

struct ConfigLookup {
    const Json::Value* value = nullptr;  // points into the document; null: there is no such value
    bool meetsNonObject = false;         // the path leads into a text, a number or an array
};

/** Follows a key path from the root of a document; an explicit null counts as missing. Pure. */
ConfigLookup lookUpConfig(const Json::Value& root, const std::vector<std::string>& path);

/** A key path for people: "a.b.c". */
std::string joinConfigPath(const std::vector<std::string>& path);

/** Member of an object; null when it is missing, is null, or `object` is no object. Pure. */
const Json::Value* findMember(const Json::Value& object, const std::string& name);

}  // namespace kelvo
