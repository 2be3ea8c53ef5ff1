#pragma once

#include <optional>
#include <string>
#include <vector>

/**
 * Properties as files "dev/properties/NAME" under the folder that the environment variable
 * KELVO_ROOT names, or under "/" when it is unset or empty. Names must be legal. Nothing is kept
 * between calls, so everything here also works while other units are being initialised.
 * Thread-safe, and safe between processes: a value is replaced as a whole.
 */
namespace properties {

/** The text of the file, of which at most `limit` bytes are read; absent when there is none. */
std::optional<std::string> readText(const std::string& name, size_t limit);

/** False when the file cannot be written, or exists already and `mayReplace` is false. */
bool writeValue(const std::string& name, const std::string& value, bool mayReplace);

/** Names of all properties, sorted; drafts and other files that are none are left out. */
std::vector<std::string> listNames();

}  // namespace properties
