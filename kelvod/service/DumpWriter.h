#pragma once

#include <string>

namespace kelvo {

/**
 * Writes a text for the reader of a dump, who may not read: that is waited for five seconds, and
 * for one dump at a time, so that such readers hold one thread at most. False when not all was
 * written, with errno saying why. Thread-safe.
 */
bool writeForReader(int fd, const std::string& text);

}  // namespace kelvo
