// The check for documents that are nested too deeply, against the library that would throw. The
// input stands behind as many brackets as its first two bytes say, around the deepest level.

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "JsonVerdict.h"
#include "Target.h"
#include "config/JsonNesting.h"

namespace {

constexpr int kLowestDepth = 990;
constexpr int kDepths = 12;

std::string nested(Bytes data) {
    std::string opening;
    std::string closing;
    for (int i = 0; i < kLowestDepth + data[0] % kDepths; ++i) {
        const bool isArray = (data[1] >> (i % 8) & 1) != 0;
        opening += isArray ? "[" : "{\"a\":";
        closing.insert(closing.begin(), isArray ? ']' : '}');
    }
    return opening + std::string(textOf(data.subspan(2))) + closing;
}

/** The library throws what is found, takes what is not; what it refuses may be found or not. */
void check(const std::string& text) {
    const bool isTooDeep = kelvo::findTooDeepJson(text) != std::string_view::npos;
    for (const auto read : {fuzz::readByReader, fuzz::readByCharReader}) {
        const fuzz::Verdict verdict = read(text);
        if ((verdict == fuzz::Verdict::THREW && !isTooDeep) ||
            (verdict == fuzz::Verdict::PARSED && isTooDeep)) {
            std::abort();
        }
    }
}

}  // namespace

void fuzzNesting(Bytes data) {
    if (data.size() < 2) {
        return;
    }
    check(std::string(textOf(data)));
    check(nested(data));
}
