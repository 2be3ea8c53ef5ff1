#pragma once

#include <json/value.h>

#include <cstdint>
#include <initializer_list>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace sim {

/**
 * A JSON value that knows where it stands, so that whatever is wrong with it can be said with its
 * place. Every reader throws ScenarioError when the value is not what it asks for. The document
 * must outlive it.
 */
class JsonPlace {
  public:
    JsonPlace(const Json::Value& value, std::string file, std::string path = "");

    bool isNull() const { return mValue->isNull(); }
    bool isArray() const { return mValue->isArray(); }
    bool isObject() const { return mValue->isObject(); }
    bool isString() const { return mValue->isString(); }
    bool isNumber() const { return mValue->isNumeric(); }
    const std::string& path() const { return mPath; }
    const std::string& file() const { return mFile; }

    /** An object with no other members than these. */
    void onlyMembers(std::initializer_list<std::string_view> known) const;
    /** A member of an object; none when it is absent. */
    std::optional<JsonPlace> find(std::string_view name) const;
    /** A member that must be there. */
    JsonPlace need(std::string_view name) const;
    /** The members of an object in the order of their names. */
    std::vector<std::pair<std::string, JsonPlace>> members() const;
    std::vector<JsonPlace> elements() const;

    std::string text() const;
    bool boolean() const;
    double number() const;
    /** `expected` replaces the message for another kind of value. */
    int64_t whole(int64_t least, int64_t most, const std::string& expected = "") const;
    int32_t int32(const std::string& expected = "") const;
    /** Seconds, 0 to 1e9, rounded to whole milliseconds. */
    int64_t milliseconds() const;
    /** Bytes from an even number of hexadecimal digits; blanks between bytes are skipped. */
    std::string hexBytes() const;

    [[noreturn]] void fail(const std::string& problem) const;

  private:
    const Json::Value* mValue;
    std::string mFile;
    std::string mPath;
};

/** A syntactically correct document; otherwise a ScenarioError with line and column. */
Json::Value parseJson(std::string_view text, const std::string& file);

}  // namespace sim
