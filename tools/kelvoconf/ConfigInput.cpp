#include "ConfigInput.h"

#include <algorithm>

#include "Files.h"
#include "config/ConfigCipher.h"

namespace kelvoconf {

namespace {

constexpr std::string_view kByteOrderMark = "\xef\xbb\xbf";

// End of the comment that begins at `start`; npos when none does or it does not end.
size_t commentEnd(std::string_view text, size_t start) {
    const std::string_view mark = text.substr(start, 2);
    if (mark == "//") {
        return text.find('\n', start);
    }
    if (mark != "/*") {
        return std::string_view::npos;
    }
    const size_t end = text.find("*/", start + 2);
    return end == std::string_view::npos ? end : end + 2;
}

std::string nameOf(const std::string& path) {
    return path == "-" ? "standard input" : path;
}

}  // namespace

size_t prefixSize(std::string_view text) {
    size_t i = text.substr(0, kByteOrderMark.size()) == kByteOrderMark ? kByteOrderMark.size() : 0;
    while (i < text.size()) {
        if (text[i] == '{') {
            return i;
        }
        const bool isBlank =
                std::string_view(" \t\r\n\v\f").find(text[i]) != std::string_view::npos;
        i = isBlank ? i + 1 : commentEnd(text, i);
    }
    return std::string_view::npos;
}

std::string placeOf(const std::string& file, std::string_view text, size_t offset) {
    const std::string_view before = text.substr(0, offset);
    const auto line = std::ranges::count(before, '\n') + 1;
    const size_t lineStart = before.rfind('\n') + 1;  // npos + 1 is 0
    return nameOf(file) + ":" + std::to_string(line) + ":" +
           std::to_string(before.size() - lineStart + 1);
}

std::string describe(const kelvo::ConfigTextError& error, const std::string& file,
                     std::string_view text) {
    std::string what = error.what;
    std::ranges::replace(what, '\n', ' ');
    while (!what.empty() && (what.back() == '.' || what.back() == ' ')) {
        what.pop_back();
    }
    return what + ": " + placeOf(file, text, error.offset);
}

ConfigText readConfigText(const std::string& path) {
    const std::string bytes = readInput(path);
    // A plain text decrypts to a valid length and a "{" once in 2^36 times, so this goes first.
    ConfigText config;
    if (kelvo::decryptConfig(bytes, config.whole) == 0) {
        return config;
    }
    config = {bytes, prefixSize(bytes)};
    if (config.start == std::string_view::npos) {
        throw Failure("neither an encrypted configuration nor a JSON object: " + nameOf(path));
    }
    return config;
}

Json::Value readConfig(const std::string& path) {
    const ConfigText config = readConfigText(path);
    Json::Value root;
    kelvo::ConfigTextError error;
    if (kelvo::parseConfigText(config.whole.substr(config.start), root, &error) != 0) {
        error.offset += config.start;
        throw Failure(describe(error, path, config.whole));
    }
    return root;
}

}  // namespace kelvoconf
