// The check for documents that are nested too deeply, against the library that would throw. The
// input stands behind as many brackets as its first two bytes say, around the deepest level.

#include <json/reader.h>

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <exception>
#include <memory>
#include <string>

#include "config/JsonNesting.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size);

namespace {

constexpr int kLowestDepth = 990;
constexpr int kDepths = 12;

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
Verdict readByReader(const std::string& text) {
    Json::Value root;
    return verdictOf([&] { return Json::Reader().parse(text, root, false); });
}

/** The tools' reader. */
Verdict readByCharReader(const std::string& text) {
    const std::unique_ptr<Json::CharReader> reader(Json::CharReaderBuilder().newCharReader());
    Json::Value root;
    return verdictOf(
            [&] { return reader->parse(text.data(), text.data() + text.size(), &root, nullptr); });
}

std::string nested(const uint8_t* data, size_t size) {
    std::string opening;
    std::string closing;
    for (int i = 0; i < kLowestDepth + data[0] % kDepths; ++i) {
        const bool isArray = (data[1] >> (i % 8) & 1) != 0;
        opening += isArray ? "[" : "{\"a\":";
        closing.insert(closing.begin(), isArray ? ']' : '}');
    }
    return opening + std::string(reinterpret_cast<const char*>(data) + 2, size - 2) + closing;
}

/** The library throws what is found, takes what is not; what it refuses may be found or not. */
void check(const std::string& text) {
    const bool isTooDeep = kelvo::findTooDeepJson(text) != std::string_view::npos;
    for (const auto read : {readByReader, readByCharReader}) {
        const Verdict verdict = read(text);
        if ((verdict == Verdict::THREW && !isTooDeep) ||
            (verdict == Verdict::PARSED && isTooDeep)) {
            std::abort();
        }
    }
}

}  // namespace

int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    if (size < 2) {
        return 0;
    }
    check(std::string(reinterpret_cast<const char*>(data), size));
    check(nested(data, size));
    return 0;
}
