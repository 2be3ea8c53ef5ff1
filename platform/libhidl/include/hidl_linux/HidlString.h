#pragma once

#include <compare>
#include <cstddef>
#include <ostream>
#include <string>

namespace android::hardware {

/** A string of an interface: bytes, by agreement UTF-8. Not thread-safe; the caller serialises. */
class hidl_string {
  public:
    hidl_string() = default;
    // Implicit as on Android, where every text an interface takes is written as a literal.
    hidl_string(const char* text)  // NOLINT(google-explicit-constructor)
          : mText(text != nullptr ? text : "") {}
    hidl_string(const char* text, size_t length) : mText(text, length) {}
    hidl_string(std::string text)  // NOLINT(google-explicit-constructor)
          : mText(std::move(text)) {}

    const char* c_str() const { return mText.c_str(); }
    size_t size() const { return mText.size(); }
    bool empty() const { return mText.empty(); }
    void clear() { mText.clear(); }
    operator std::string() const { return mText; }  // NOLINT(google-explicit-constructor)

    auto operator<=>(const hidl_string&) const = default;
    bool operator==(const hidl_string&) const = default;
    bool operator==(const char* text) const { return mText == text; }

  private:
    std::string mText;
};

inline std::ostream& operator<<(std::ostream& stream, const hidl_string& text) {
    return stream << text.c_str();
}

}  // namespace android::hardware
