#pragma once

#include <json/value.h>

#include <algorithm>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kelvo {

/**
 * One thing in a section that its reader does not take as it stands. What follows from it is the
 * reader's to say; an engine logs it where a text is pinned, kelvoconf says it with its place.
 */
struct ConfigFault {
    enum class Kind {
        MISSING,       // a member that must be there
        WRONG_TYPE,    // of the section, a member or an element
        WRONG_LENGTH,  // a list with too few or too many values
        EMPTY,         // a list without a value that counts
        FALLING,       // an element below the value before it
        OUT_OF_RANGE,  // a number that is not taken
        REVERSED,      // a range that ends below its beginning
    };

    Kind kind = Kind::MISSING;
    std::string key = {};                          // member of the section; empty: all of it
    std::optional<Json::ArrayIndex> element = {};  // of the member; none: all of it
};

using ConfigFaults = std::vector<ConfigFault>;

/** Whether there is such a fault of a member, or of the section, as a whole. */
inline bool hasFault(const ConfigFaults& faults, ConfigFault::Kind kind, std::string_view key) {
    return std::any_of(faults.begin(), faults.end(), [kind, key](const ConfigFault& fault) {
        return fault.kind == kind && fault.key == key && !fault.element;
    });
}

}  // namespace kelvo
