#pragma once

#include <algorithm>
#include <cstddef>
#include <initializer_list>
#include <iterator>
#include <memory>
#include <type_traits>
#include <utility>
#include <vector>

namespace android::hardware {

/**
 * A list of an interface. Elements lie in one piece, also bools; the length is fixed but for
 * resize(). An index is not checked. Not thread-safe; the caller serialises.
 */
template <typename T>
class hidl_vec {
  public:
    using value_type = T;
    using iterator = T*;
    using const_iterator = const T*;

    hidl_vec() = default;
    // Implicit conversions as on Android.
    hidl_vec(std::initializer_list<T> values) : hidl_vec(values.begin(), values.end()) {}
    hidl_vec(const std::vector<T>& values)  // NOLINT(google-explicit-constructor)
          : hidl_vec(values.begin(), values.end()) {}
    template <std::input_iterator Iterator>
    hidl_vec(Iterator first, Iterator last)
          : mSize(static_cast<size_t>(std::distance(first, last))), mValues(allocate(mSize)) {
        std::copy(first, last, begin());
    }
    hidl_vec(const hidl_vec& other) : hidl_vec(other.begin(), other.end()) {}
    hidl_vec(hidl_vec&& other) noexcept { swap(other); }
    ~hidl_vec() = default;

    hidl_vec& operator=(hidl_vec other) noexcept {
        swap(other);
        return *this;
    }
    operator std::vector<T>() const {  // NOLINT(google-explicit-constructor)
        return std::vector<T>(begin(), end());
    }

    size_t size() const { return mSize; }
    T* data() { return mValues.get(); }
    const T* data() const { return mValues.get(); }
    T& operator[](size_t index) { return mValues[index]; }
    const T& operator[](size_t index) const { return mValues[index]; }

    iterator begin() { return data(); }
    iterator end() { return data() + mSize; }
    const_iterator begin() const { return data(); }
    const_iterator end() const { return data() + mSize; }

    /** Keeps the elements that have room; new ones have their default value. */
    void resize(size_t size) {
        std::unique_ptr<T[]> values = allocate(size);
        std::move(begin(), begin() + std::min(size, mSize), values.get());
        mValues = std::move(values);
        mSize = size;
    }

    bool operator==(const hidl_vec& other) const {
        return std::equal(begin(), end(), other.begin(), other.end());
    }

  private:
    static std::unique_ptr<T[]> allocate(size_t size) {
        return size != 0 ? std::make_unique<T[]>(size) : nullptr;
    }
    void swap(hidl_vec& other) noexcept {
        std::swap(mSize, other.mSize);
        std::swap(mValues, other.mValues);
    }

    size_t mSize = 0;
    std::unique_ptr<T[]> mValues;
};

}  // namespace android::hardware
