#include "kelvoconf/lint/KeyPath.h"

#include <utility>

#include "common/JsonText.h"

namespace kelvo::lint {

KeyPath KeyPath::with(Step step) const {
    KeyPath path = *this;
    path.mSteps.push_back(std::move(step));
    return path;
}

std::string KeyPath::text() const {
    std::string text;
    for (const Step& step : mSteps) {
        if (const auto* name = std::get_if<std::string>(&step)) {
            text += (text.empty() ? "" : ".") + nameInPath(*name);
        } else {
            text += "[" + std::to_string(std::get<Json::ArrayIndex>(step)) + "]";
        }
    }
    return text;
}

std::string nameInPath(const std::string& name) {
    const bool isPlain = !name.empty() && name.find_first_not_of(
                                                  "abcdefghijklmnopqrstuvwxyz"
                                                  "ABCDEFGHIJKLMNOPQRSTUVWXYZ"
                                                  "0123456789_-") == std::string::npos;
    if (isPlain) {
        return name;
    }
    return common::compactJson(name, common::JsonStyle::UTF8);
}

}  // namespace kelvo::lint
