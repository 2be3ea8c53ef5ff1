#pragma once

#include <json/value.h>

#include <string>
#include <variant>
#include <vector>

namespace kelvo::lint {

/** Where a value stands in a document: names of members and numbers of elements, from the root. */
class KeyPath {
  public:
    using Step = std::variant<std::string, Json::ArrayIndex>;

    KeyPath() = default;
    /** The path of a member of the document. */
    explicit KeyPath(const std::string& name) : mSteps{name} {}

    KeyPath operator/(const std::string& name) const { return with(name); }
    KeyPath operator[](Json::ArrayIndex element) const { return with(element); }

    const std::vector<Step>& steps() const { return mSteps; }
    /** "a.b[3].\"c,d\"": names of other characters than letters, digits, "_" and "-" are quoted. */
    std::string text() const;

  private:
    KeyPath with(Step step) const;

    std::vector<Step> mSteps;
};

/** A name as KeyPath::text() writes it. */
std::string nameInPath(const std::string& name);

}  // namespace kelvo::lint
