#include "kelvoconf/lint/SourceFile.h"

#include <algorithm>
#include <utility>

#include "common/JsonText.h"

namespace kelvo::lint {

namespace {

constexpr char kBlanks[] = " \t\r\n";

const Json::Value* stepInto(const Json::Value& value, const KeyPath::Step& step) {
    if (const auto* name = std::get_if<std::string>(&step)) {
        return value.isObject() ? value.find(name->data(), name->data() + name->size()) : nullptr;
    }
    const auto element = std::get<Json::ArrayIndex>(step);
    return value.isArray() && element < value.size() ? &value[element] : nullptr;
}

// A member may stand on another line than its key, where one looks for it.
size_t keyOffset(const std::string& text, size_t valueOffset) {
    const size_t colon = text.find_last_not_of(kBlanks, valueOffset - 1);
    if (valueOffset == 0 || colon == std::string::npos || text[colon] != ':') {
        return valueOffset;
    }
    const size_t key = text.find_last_not_of(kBlanks, colon - 1);
    return key != std::string::npos && text[key] == '"' ? key : valueOffset;
}

}  // namespace

SourceFile::SourceFile(ConfigFile file) : mFile(std::move(file)) {
    ConfigTextError error;
    if (parseConfigText(mFile.text, mRoot, &error) != 0) {
        mRoot = Json::Value();
        mError = std::move(error);
    }
}

int32_t SourceFile::lineAt(size_t offset) const {
    return mFile.firstLine + common::placeIn(mFile.text, offset).line - 1;
}

int32_t SourceFile::lineOf(const KeyPath& path) const {
    const Json::Value* value = &mRoot;
    for (const KeyPath::Step& step : path.steps()) {
        const Json::Value* const next = stepInto(*value, step);
        if (next == nullptr) {
            break;
        }
        value = next;
    }
    const auto offset = static_cast<size_t>(std::max<ptrdiff_t>(value->getOffsetStart(), 0));
    return lineAt(keyOffset(mFile.text, offset));
}

}  // namespace kelvo::lint
