#include "config/ConfigText.h"

#include <json/reader.h>

#include <algorithm>

#include "config/JsonNesting.h"

namespace kelvo {

namespace {

int fail(ConfigTextError* error, size_t offset, const std::string& what) {
    if (error != nullptr) {
        *error = {offset, what};
    }
    return -1;
}

}  // namespace

int parseConfigText(const std::string& text, Json::Value& root, ConfigTextError* error) {
    const size_t tooDeep = findTooDeepJson(text);
    if (tooDeep != std::string::npos) {
        return fail(error, tooDeep, kTooDeepJson);
    }
    Json::Reader reader;
    if (reader.parse(text, root, false)) {
        return 0;
    }
    const auto errors = reader.getStructuredErrors();
    if (errors.empty()) {
        return fail(error, 0, "not JSON");
    }
    return fail(error, static_cast<size_t>(std::max<ptrdiff_t>(errors[0].offset_start, 0)),
                errors[0].message);
}

}  // namespace kelvo
