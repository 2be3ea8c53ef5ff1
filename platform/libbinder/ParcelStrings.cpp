// Strings. Each is a count of characters (-1: null), the characters, a zero, padding.

#include <binder/Parcel.h>
#include <utils/String8.h>
#include <utils/Unicode.h>

#include <cstring>
#include <memory>
#include <utility>

#include "ParcelLimits.h"

namespace android {

namespace {

// Count that stands for a null string.
constexpr int32_t kNullCount = -1;

const uint8_t* bytesOf(const std::string& text) {
    return reinterpret_cast<const uint8_t*>(text.data());
}

}  // namespace

status_t Parcel::writeCString(const char* str) {
    return write(str, strlen(str) + 1);
}

const char* Parcel::readCString() const {
    if (mDataPos >= mDataSize) {
        return nullptr;
    }
    const char* start = reinterpret_cast<const char*>(mData + mDataPos);
    const void* end = memchr(start, 0, mDataSize - mDataPos);
    if (end == nullptr) {
        return nullptr;
    }
    const auto length = static_cast<size_t>(static_cast<const char*>(end) - start);
    return static_cast<const char*>(readInplace(length + 1));
}

status_t Parcel::writeString8(const String8& str) {
    if (const status_t status = writeInt32(static_cast<int32_t>(str.bytes())); status != OK) {
        return status;
    }
    return write(str.string(), str.bytes() + 1);
}

status_t Parcel::readString8(String8* pArg) const {
    pArg->clear();
    int32_t size;
    if (const status_t status = readInt32(&size); status != OK) {
        return status;
    }
    if (size < 0 || size == INT32_MAX) {
        return UNEXPECTED_NULL;
    }
    const auto length = static_cast<size_t>(size);
    const auto* text = static_cast<const char*>(readInplace(length + 1));
    if (text == nullptr || text[length] != '\0') {
        return UNEXPECTED_NULL;
    }
    return pArg->setTo(text, length);
}

String8 Parcel::readString8() const {
    String8 value;
    readString8(&value);
    return value;
}

status_t Parcel::writeString16(const String16& str) {
    return writeString16(str.string(), str.size());
}

status_t Parcel::writeString16(const char16_t* str, size_t len) {
    if (str == nullptr) {
        return writeInt32(kNullCount);
    }
    if (len > kMaxParcelBytes / sizeof(char16_t)) {
        return BAD_VALUE;
    }
    if (const status_t status = writeInt32(static_cast<int32_t>(len)); status != OK) {
        return status;
    }
    auto* const start = static_cast<uint8_t*>(writeInplace((len + 1) * sizeof(char16_t)));
    if (start == nullptr) {
        return mError != OK ? mError : BAD_VALUE;
    }
    memcpy(start, str, len * sizeof(char16_t));
    memset(start + len * sizeof(char16_t), 0, sizeof(char16_t));
    return OK;
}

const char16_t* Parcel::readString16Inplace(size_t* outLen) const {
    *outLen = 0;
    int32_t size = 0;
    const bool aligned = mDataPos % alignof(char16_t) == 0;
    if (!aligned || readInt32(&size) != OK || size < 0 || size == INT32_MAX) {
        return nullptr;
    }
    const auto length = static_cast<size_t>(size);
    const auto* text = static_cast<const char16_t*>(readInplace((length + 1) * sizeof(char16_t)));
    if (text == nullptr || text[length] != u'\0') {
        return nullptr;
    }
    *outLen = length;
    return text;
}

status_t Parcel::readString16(String16* pArg) const {
    size_t length;
    const char16_t* text = readString16Inplace(&length);
    if (text == nullptr) {
        *pArg = String16();
        return UNEXPECTED_NULL;
    }
    return pArg->setTo(text, length);
}

String16 Parcel::readString16() const {
    String16 value;
    readString16(&value);
    return value;
}

status_t Parcel::writeUtf8AsUtf16(const std::string& str) {
    const ssize_t length = utf8_to_utf16_length(bytesOf(str), str.size());
    if (length < 0 || static_cast<size_t>(length) > kMaxParcelBytes / sizeof(char16_t)) {
        return BAD_VALUE;
    }
    if (const status_t status = writeInt32(static_cast<int32_t>(length)); status != OK) {
        return status;
    }
    const size_t units = static_cast<size_t>(length) + 1;
    auto* text = static_cast<char16_t*>(writeInplace(units * sizeof(char16_t)));
    if (text == nullptr) {
        return mError != OK ? mError : BAD_VALUE;
    }
    utf8_to_utf16(bytesOf(str), str.size(), text, units);
    return OK;
}

status_t Parcel::writeUtf8AsUtf16(const std::unique_ptr<std::string>& str) {
    return str ? writeUtf8AsUtf16(*str) : writeInt32(kNullCount);
}

status_t Parcel::readUtf8FromUtf16(std::string* str) const {
    size_t units;
    const char16_t* text = readString16Inplace(&units);
    if (text == nullptr) {
        return UNEXPECTED_NULL;
    }
    str->clear();
    if (units == 0) {
        return OK;
    }
    // Lone halves of surrogate pairs vanish; a text of nothing else has no UTF-8 form.
    const ssize_t length = utf16_to_utf8_length(text, units);
    if (length <= 0) {
        return BAD_VALUE;
    }
    str->resize(static_cast<size_t>(length) + 1);
    utf16_to_utf8(text, units, str->data(), str->size());
    str->resize(static_cast<size_t>(length));
    return OK;
}

status_t Parcel::readUtf8FromUtf16(std::unique_ptr<std::string>* str) const {
    str->reset();
    const size_t start = dataPosition();
    int32_t count;
    if (const status_t status = readInt32(&count); status != OK || count < 0) {
        return status;
    }
    setDataPosition(start);
    auto value = std::make_unique<std::string>();
    const status_t status = readUtf8FromUtf16(value.get());
    if (status == OK) {
        *str = std::move(value);
    }
    return status;
}

}  // namespace android
