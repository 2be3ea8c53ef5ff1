#include "base/JoinValues.h"

namespace kelvo {

std::string joinValues(const std::vector<int32_t>& values) {
    std::string text;
    for (const int32_t value : values) {
        text += (text.empty() ? "" : " ") + std::to_string(value);
    }
    return text;
}

}  // namespace kelvo
