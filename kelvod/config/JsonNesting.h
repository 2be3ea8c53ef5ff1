#pragma once

#include <cstddef>
#include <string_view>

// Where the JSON library sees comments and how deep a text nests, for whoever parses a text that
// somebody else wrote: the library ends the process at a value that lies too deep. Pure.

namespace kelvo {

/** The deepest level at which the library takes a value, the document itself counting as one. */
inline constexpr int kMaxJsonDepth = 1000;
/** What is wrong with a text that has a deeper one. */
inline constexpr char kTooDeepJson[] = "nested deeper than 1000 levels";

/**
 * Offset behind the comment that begins at `start`: behind its line's end, which is "\r" as well,
 * or behind its end mark. The text's size when it does not end, npos when no comment begins there.
 */
size_t jsonCommentEnd(std::string_view text, size_t start);

/**
 * Offset of the first value that lies deeper than the library takes (or of a comment before it),
 * the text's size when it would begin there; npos when there is none, or when the library refuses
 * the text before it gets there. Neither of the library's readers ends the process at a text with
 * npos, and neither takes one without.
 */
size_t findTooDeepJson(std::string_view text);

}  // namespace kelvo
