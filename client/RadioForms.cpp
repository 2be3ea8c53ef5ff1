#include "client/RadioForms.h"

#include <charconv>
#include <cstdint>
#include <system_error>

namespace client {

namespace {

/** Takes "NAME:NUMBER" off the front. */
bool takeFigure(std::string_view& text, std::string_view name) {
    if (!text.starts_with(name) || text.substr(name.size(), 1) != ":") {
        return false;
    }
    text.remove_prefix(name.size() + 1);
    int64_t number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    text.remove_prefix(static_cast<size_t>(end - text.data()));
    return error == std::errc();
}

}  // namespace

bool hasForm(std::string_view text, const RadioForm& form) {
    for (const std::string_view name : form) {
        if (name != form.front()) {
            if (!text.starts_with(',')) {
                return false;
            }
            text.remove_prefix(1);
        }
        if (!takeFigure(text, name)) {
            return false;
        }
    }
    return text.empty();
}

std::string formText(const RadioForm& form) {
    std::string text;
    for (const std::string_view name : form) {
        text.append(text.empty() ? "" : ",").append(name).append(":N");
    }
    return text;
}

}  // namespace client
