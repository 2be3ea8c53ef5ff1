#pragma once

#include <string>

#include "config/ConfigFault.h"
#include "support/Json.h"

/** "key[element]:kind" of each, with blanks between. */
inline std::string textOf(const kelvo::ConfigFaults& faults) {
    static const char* const kKinds[] = {"missing", "type",  "length",  "empty",
                                         "falling", "range", "reversed"};
    std::string text;
    for (const kelvo::ConfigFault& fault : faults) {
        text += (text.empty() ? "" : " ") + fault.key;
        text += fault.element ? "[" + std::to_string(*fault.element) + "]" : "";
        text += std::string(":") + kKinds[static_cast<int>(fault.kind)];
    }
    return text;
}
