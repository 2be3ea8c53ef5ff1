#pragma once

#include <json/value.h>

#include <string>
#include <utility>
#include <vector>

#include "kelvoconf/lint/KeyPath.h"

namespace kelvo::lint {

/** A value of a document, present or not, that knows its place. The document outlives it. */
class ConfigNode {
  public:
    ConfigNode(const Json::Value& value, KeyPath path) : mValue(&value), mPath(std::move(path)) {}

    const Json::Value& value() const { return *mValue; }
    const KeyPath& path() const { return mPath; }
    /** Neither missing nor null, which the daemon does not tell apart. */
    explicit operator bool() const { return !mValue->isNull(); }

    /** A member; a node without a value when there is none, or this is no object. */
    ConfigNode operator/(const std::string& name) const;
    ConfigNode operator[](Json::ArrayIndex element) const;
    /** Members of an object in the order of their names; none of anything else. */
    std::vector<std::pair<std::string, ConfigNode>> members() const;
    /** Elements of an array; none of anything else. */
    std::vector<ConfigNode> elements() const;

  private:
    const Json::Value* mValue;
    KeyPath mPath;
};

/** The value on one line, for messages. */
std::string shown(const Json::Value& value);

}  // namespace kelvo::lint
