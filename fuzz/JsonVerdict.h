#pragma once

#include <json/reader.h>

#include <exception>
#include <memory>
#include <string>

namespace fuzz {

/** What the JSON library makes of a text. */
enum class Verdict { PARSED, REFUSED, THREW };

template <typename Parse>
Verdict verdictOf(const Parse& parse) {
    try {
        return parse() ? Verdict::PARSED : Verdict::REFUSED;
    } catch (const std::exception&) {
        return Verdict::THREW;
    }
}

/** The daemon's reader. */
inline Verdict readByReader(const std::string& text) {
    Json::Value root;
    return verdictOf([&] { return Json::Reader().parse(text, root, false); });
}

/** The tools' reader. */
inline Verdict readByCharReader(const std::string& text) {
    const std::unique_ptr<Json::CharReader> reader(Json::CharReaderBuilder().newCharReader());
    Json::Value root;
    return verdictOf(
            [&] { return reader->parse(text.data(), text.data() + text.size(), &root, nullptr); });
}

}  // namespace fuzz
