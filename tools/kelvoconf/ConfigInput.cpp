#include "ConfigInput.h"

#include <algorithm>

#include "Files.h"
#include "common/JsonText.h"
#include "config/ConfigCipher.h"
#include "config/JsonNesting.h"

namespace kelvoconf {

namespace {

constexpr std::string_view kByteOrderMark = "\xef\xbb\xbf";

std::string nameOf(const std::string& path) {
    return path == "-" ? "standard input" : path;
}

/** One line for a JSON error: "what: FILE:LINE:COLUMN". */
std::string describe(const kelvo::ConfigTextError& error, const std::string& file,
                     std::string_view text) {
    std::string what = error.what;
    std::ranges::replace(what, '\n', ' ');
    while (!what.empty() && (what.back() == '.' || what.back() == ' ')) {
        what.pop_back();
    }
    return what + ": " + placeOf(file, text, error.offset);
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
        i = isBlank ? i + 1 : kelvo::jsonCommentEnd(text, i);
    }
    return std::string_view::npos;
}

std::string placeOf(const std::string& file, std::string_view text, size_t offset) {
    const common::TextPlace place = common::placeIn(text, offset);
    return nameOf(file) + ":" + std::to_string(place.line) + ":" + std::to_string(place.column);
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
