#include "Property.h"

#include <ctime>
#include <random>

namespace {

using Choices = std::vector<uint32_t>;

constexpr size_t kChoices = 200;  // of a case
constexpr time_t kLongest = 20;   // s, to make it smaller

/** What is left out or made smaller in turn: stretches first, then single choices. */
std::vector<Choices> smallerOnes(const Choices& choices) {
    std::vector<Choices> smaller;
    for (auto size = std::ssize(choices); size > 0; size /= 2) {
        for (ptrdiff_t at = 0; at + size <= std::ssize(choices); at += size) {
            Choices& fewer = smaller.emplace_back(choices);
            fewer.erase(fewer.begin() + at, fewer.begin() + at + size);
        }
    }
    for (size_t at = 0; at < choices.size(); ++at) {
        for (const uint32_t less : {choices[at], choices[at] / 2, std::min(choices[at], 1U)}) {
            smaller.emplace_back(choices)[at] -= less;
        }
    }
    return smaller;
}

/** The case drawn, when it fails; else empty. */
std::string failure(const Property& property, const Choices& choices) {
    Draws draws(choices);
    return property(draws) ? "" : "fails with " + draws.caseText();
}

/** The text of the smallest case that was seen to fail. */
std::string smallestFailure(const Property& property, Choices choices, std::string text) {
    const time_t end = time(nullptr) + kLongest;
    const auto fails = [&](const Choices& smaller) {
        const bool goesOn = smaller != choices && time(nullptr) < end;
        const std::string failed = goesOn ? failure(property, smaller) : "";
        text = failed.empty() ? text : failed;
        return !failed.empty();
    };
    while (true) {
        const std::vector<Choices> smaller = smallerOnes(choices);
        const auto found = std::ranges::find_if(smaller, fails);
        if (found == smaller.end()) {
            return text;
        }
        choices = *found;
    }
}

}  // namespace

std::string counterexample(const Property& property, int count) {
    for (int seed = 1; seed <= count; ++seed) {
        std::mt19937 generator(static_cast<uint32_t>(seed));  // the same on every machine
        Choices choices(kChoices);
        // Small numbers are as frequent as large ones: boundaries lie low.
        std::ranges::generate(choices, [&] { return generator() >> generator() % 32; });
        if (const std::string text = failure(property, choices); !text.empty()) {
            return "seed " + std::to_string(seed) + " " + smallestFailure(property, choices, text);
        }
    }
    return "";
}
