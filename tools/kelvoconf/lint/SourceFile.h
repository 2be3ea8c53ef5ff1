#pragma once

#include <json/value.h>

#include <cstdint>
#include <optional>
#include <string>

#include "config/ConfigText.h"
#include "kelvoconf/lint/KeyPath.h"
#include "kelvoconf/lint/Lint.h"

namespace kelvo::lint {

/** A configuration file, parsed, that finds the lines of its values. */
class SourceFile {
  public:
    explicit SourceFile(ConfigFile file);

    const std::string& name() const { return mFile.name; }
    const std::string& text() const { return mFile.text; }
    /** Null when the text does not parse. */
    const Json::Value& root() const { return mRoot; }
    /** Why the text does not parse, if it does not. */
    const std::optional<ConfigTextError>& error() const { return mError; }

    int32_t lineAt(size_t offset) const;
    /**
     * The line of the value at a path: of its key, or of the element; for a path that leads
     * nowhere, of the last value on it.
     */
    int32_t lineOf(const KeyPath& path) const;

  private:
    const ConfigFile mFile;
    Json::Value mRoot;
    std::optional<ConfigTextError> mError;
};

}  // namespace kelvo::lint
