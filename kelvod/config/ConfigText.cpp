#include "config/ConfigText.h"

#include <json/reader.h>

#include <algorithm>
#include <string_view>

namespace kelvo {

namespace {

// The JSON library ends the process at a value that lies deeper than this, the document itself
// counting as one.
constexpr int kMaxDepth = 1000;

size_t skipString(std::string_view text, size_t start) {
    for (size_t i = start + 1; i < text.size(); ++i) {
        if (text[i] == '\\') {
            ++i;
        } else if (text[i] == '"') {
            return i + 1;
        }
    }
    return text.size();
}

size_t skipComment(std::string_view text, size_t start) {
    const bool isLine = text.substr(start, 2) == "//";
    const bool isBlock = text.substr(start, 2) == "/*";
    if (!isLine && !isBlock) {
        return start + 1;
    }
    const size_t end = text.find(isLine ? "\n" : "*/", start + 2);
    return end == std::string_view::npos ? text.size() : end + (isLine ? 1 : 2);
}

// Where the document's first value lies that is too deep for the library, or npos.
size_t findTooDeep(std::string_view text) {
    int depth = 0;
    for (size_t i = 0; i < text.size();) {
        const char c = text[i];
        const bool isClosing = c == ']' || c == '}';
        const bool isBlank = c == ' ' || c == '\t' || c == '\r' || c == '\n';
        if (depth >= kMaxDepth && !isClosing && !isBlank) {
            return i;
        }
        depth += c == '[' || c == '{' ? 1 : 0;
        depth -= isClosing ? 1 : 0;
        if (isClosing && depth <= 0) {
            break;
        }
        i = c == '"' ? skipString(text, i) : c == '/' ? skipComment(text, i) : i + 1;
    }
    return std::string_view::npos;
}

int fail(ConfigTextError* error, size_t offset, const std::string& what) {
    if (error != nullptr) {
        *error = {offset, what};
    }
    return -1;
}

}  // namespace

int parseConfigText(const std::string& text, Json::Value& root, ConfigTextError* error) {
    const size_t tooDeep = findTooDeep(text);
    if (tooDeep != std::string_view::npos) {
        return fail(error, tooDeep, "nested deeper than 1000 levels");
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
