#pragma once

#include <algorithm>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <cstring>

#include "Target.h"

/** Takes an input apart, from its front. What is missing is 0. Not thread-safe. */
class Input {
  public:
    explicit Input(Bytes data) : mLeft(data) {}

    bool empty() const { return mLeft.empty(); }
    Bytes rest() const { return mLeft; }

    /** At most this many bytes. */
    Bytes take(size_t size) {
        const Bytes taken = mLeft.first(std::min(size, mLeft.size()));
        mLeft = mLeft.subspan(taken.size());
        return taken;
    }
    uint8_t byte() { return number<uint8_t>(); }
    bool flag() { return byte() % 2 != 0; }
    /** Little-endian. */
    template <std::integral T>
    T number() {
        T value = 0;
        const Bytes bytes = take(sizeof(T));
        std::memcpy(&value, bytes.data(), bytes.size());
        return value;
    }
    /** lowest to highest, at most 255 apart. */
    template <std::integral T>
    T within(T lowest, T highest) {
        return static_cast<T>(lowest + static_cast<T>(byte() % (highest - lowest + 1)));
    }
    template <typename Array>
    const auto& oneOf(const Array& array) {
        return array[byte() % std::size(array)];
    }
    /** A byte says how many follow. */
    Bytes counted() { return take(byte()); }
    /** Up to the next zero byte, which is taken too. */
    Bytes upToZero() {
        const auto zero = std::ranges::find(mLeft, 0);
        const Bytes taken = take(static_cast<size_t>(zero - mLeft.begin()));
        take(1);
        return taken;
    }

  private:
    Bytes mLeft;
};
