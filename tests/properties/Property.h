#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

/**
 * The choices that make a case, drawn from a list: a shorter list, or smaller numbers, make a
 * smaller case. After its end everything drawn is the lowest.
 */
class Draws {
  public:
    explicit Draws(std::vector<uint32_t> choices) : mChoices(std::move(choices)) {}

    /** lowest to highest. */
    int32_t in(int32_t lowest, int32_t highest) { return noted(draw(lowest, highest)); }
    double real(double lowest, double highest) {
        return noted(lowest + (highest - lowest) * draw(0, 1'000'000) / 1e6);
    }
    /** True in one of `count` cases; false in the smallest. */
    bool oneIn(int32_t count) { return in(0, count - 1) == count - 1; }
    /** What a message says of the case besides the numbers drawn. */
    void note(const std::string& text) { mCase += text + ' '; }
    const std::string& caseText() const { return mCase; }

  private:
    int32_t draw(int32_t lowest, int32_t highest) {
        const uint32_t choice = mNext < mChoices.size() ? mChoices[mNext++] : 0;
        return static_cast<int32_t>(lowest + choice % (int64_t{highest} - lowest + 1));
    }
    template <typename T>
    T noted(T value) {
        note(std::to_string(value));
        return value;
    }

    const std::vector<uint32_t> mChoices;
    size_t mNext = 0;
    std::string mCase;
};

/** Whether something holds in the case that the draws make. */
using Property = std::function<bool(Draws& draws)>;

/**
 * Looks for a case in which the property does not hold, in `count` cases that are the same on every
 * run. The first is made smaller for as long as it fails; returns its seed and what the smallest
 * one drew. Empty when the property holds.
 */
std::string counterexample(const Property& property, int count);

/** A test whose body returns whether something holds in the case that `draws` make. */
#define PROPERTY(suite, name, count)                       \
    static bool suite##name(Draws& draws);                 \
    TEST(suite, name) {                                    \
        EXPECT_EQ(counterexample(suite##name, count), ""); \
    }                                                      \
    bool suite##name(Draws& draws)
