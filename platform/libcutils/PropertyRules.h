#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

/** What is a legal property, and what a value means. Pure: no file, no state. Thread-safe. */
namespace properties {

/**
 * Letters, digits and "-_@:", in parts divided by single dots. As a slash is not among them and
 * no name begins with a dot, a legal name is also the name of a visible file in its folder.
 */
bool isLegalName(std::string_view name);

/** Set once and never changed again; its value may be longer than PROP_VALUE_MAX. */
bool isReadOnly(std::string_view name);

/** Whether a value of this length may stand under the name. */
bool isLegalLength(std::string_view name, size_t length);

/** The value without the newline that an editor puts at its end, up to the first NUL byte. */
std::string_view valueOfText(std::string_view text);

/** Absent for any text but the ten that Android knows; white space counts as other text. */
std::optional<bool> toBool(std::string_view value);

/**
 * Leading white space and text behind the number are ignored; "0x" and "0" infer the base. Absent
 * without a digit and for a number outside [lowest, highest]. `value` ends with a zero.
 */
std::optional<int64_t> toInteger(const char* value, int64_t lowest, int64_t highest);

}  // namespace properties
