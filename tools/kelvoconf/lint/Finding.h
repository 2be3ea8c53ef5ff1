#pragma once

#include <compare>
#include <cstdint>
#include <string>

namespace kelvo::lint {

enum class Severity {
    WARNING,  // a trap: it works as written, but hardly as meant
    ERROR,    // something that the file says does not happen
};

/** One mistake or trap of a configuration. */
struct Finding {
    Severity severity = Severity::WARNING;
    std::string rule;    // stable name of the kind, such as "unknown-zone"
    std::string file;    // as its caller named it
    std::string path;    // key path in that file, as KeyPath::text() writes it
    int32_t line = 0;    // of the file, from 1; 0 when there is no such place
    std::string what;    // what is wrong
    std::string effect;  // what the daemon does with it
    std::string mend;    // how to mend it

    auto operator<=>(const Finding&) const = default;
};

/** "warning" or "error". */
const char* severityName(Severity severity);

}  // namespace kelvo::lint
