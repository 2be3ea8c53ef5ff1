#include <limits>
#include <memory>

#include <binder/Binder.h>
#include <binder/Parcel.h>
#include <binder/Status.h>
#include <gtest/gtest.h>

#include <functional>

namespace android {
namespace {

using binder::Status;

/** Fills a parcel as another process could: with words that mean nothing, and no objects. */
void fill(Parcel* parcel, const std::vector<int32_t>& words) {
    ASSERT_EQ(OK, parcel->setData(reinterpret_cast<const uint8_t*>(words.data()),
                                  words.size() * sizeof(int32_t)));
}

template <typename T>
auto vectorReader(status_t (Parcel::*read)(std::vector<T>*) const) {
    return [read](const Parcel& parcel) {
        std::vector<T> values(3);
        const status_t status = (parcel.*read)(&values);
        EXPECT_TRUE(status == OK || values.empty());
        EXPECT_LE(values.capacity(), 4096u);
        return status;
    };
}

TEST(ParcelHostileTest, refusesCountsThatTheRestCannotHold) {
    const std::function<status_t(const Parcel&)> readers[] = {
            vectorReader<int8_t>(&Parcel::readByteVector),
            vectorReader<int32_t>(&Parcel::readInt32Vector),
            vectorReader<int64_t>(&Parcel::readInt64Vector),
            vectorReader<double>(&Parcel::readDoubleVector),
            vectorReader<bool>(&Parcel::readBoolVector),
            vectorReader<String16>(&Parcel::readString16Vector),
            vectorReader<std::string>(&Parcel::readUtf8VectorFromUtf16Vector),
            vectorReader<sp<IBinder>>(&Parcel::readStrongBinderVector)};
    const struct {
        std::vector<int32_t> words;
        status_t expected;
    } rows[] = {{{}, NOT_ENOUGH_DATA},
                {{-1}, UNEXPECTED_NULL},
                {{INT32_MIN}, UNEXPECTED_NULL},
                {{1}, NOT_ENOUGH_DATA},
                {{INT32_MAX, 0, 0}, NOT_ENOUGH_DATA},
                {{0x40000000, 0, 0}, NOT_ENOUGH_DATA},
                {{0}, OK}};
    for (size_t reader = 0; reader < std::size(readers); ++reader) {
        for (size_t row = 0; row < std::size(rows); ++row) {
            Parcel parcel;
            fill(&parcel, rows[row].words);
            EXPECT_EQ(rows[row].expected, readers[reader](parcel)) << reader << ", " << row;
        }
    }
}

TEST(ParcelHostileTest, refusesBrokenStrings) {
    const std::vector<int32_t> rows[] = {
            {},
            {-1},
            {-2, 0},
            {1},
            {INT32_MAX, 0},
            {INT32_MAX - 1, 0},
            {0x3fffffff, 0},
            {2, 0x00620061},              // no room for the final zero
            {1, 0x00620061, 0x00630063},  // no final zero
    };
    for (size_t i = 0; i < std::size(rows); ++i) {
        Parcel parcel;
        fill(&parcel, rows[i]);
        String16 string("before");
        EXPECT_EQ(UNEXPECTED_NULL, parcel.readString16(&string)) << i;
        EXPECT_EQ(String16(), string) << i;
        parcel.setDataPosition(0);
        std::string text;
        EXPECT_EQ(UNEXPECTED_NULL, parcel.readUtf8FromUtf16(&text)) << i;
    }
    Parcel unterminated;
    fill(&unterminated, {0x61616161});
    EXPECT_EQ(nullptr, unterminated.readCString());
    fill(&unterminated, {3, 0x61616161});
    EXPECT_STREQ("", unterminated.readString8().string());
}

TEST(ParcelHostileTest, convertsBrokenTextWithoutHarm) {
    Parcel parcel;
    fill(&parcel, {2, 0x0061d83c, 0, 1, 0xdf21});  // lone halves of surrogate pairs
    std::string text;
    EXPECT_EQ(OK, parcel.readUtf8FromUtf16(&text));
    EXPECT_EQ("a", text);
    EXPECT_EQ(BAD_VALUE, parcel.readUtf8FromUtf16(&text));
    Parcel written;
    EXPECT_EQ(BAD_VALUE, written.writeUtf8AsUtf16(std::string("a\xe2\x82")));
    EXPECT_EQ(0u, written.dataSize());
}

TEST(ParcelHostileTest, takesNoForgedObjects) {
    const sp<BBinder> binder = new BBinder;
    Parcel honest;
    honest.writeStrongBinder(binder);
    honest.writeFileDescriptor(0);
    Parcel forged;
    ASSERT_EQ(OK, forged.setData(honest.data(), honest.dataSize()));
    EXPECT_EQ(0u, forged.objectsCount());
    sp<IBinder> found;
    EXPECT_EQ(BAD_TYPE, forged.readNullableStrongBinder(&found));
    EXPECT_EQ(nullptr, forged.readStrongBinder());
    forged.setDataPosition(28);
    EXPECT_EQ(BAD_TYPE, forged.readFileDescriptor());
    forged.freeData();
    EXPECT_EQ(2, binder->getStrongCount());
    // An object is not taken for one of another kind, or from its middle.
    honest.setDataPosition(28);
    EXPECT_EQ(nullptr, honest.readStrongBinder());
    honest.setDataPosition(0);
    EXPECT_EQ(BAD_TYPE, honest.readFileDescriptor());
    honest.setDataPosition(4);
    EXPECT_EQ(nullptr, honest.readStrongBinder());
}

TEST(ParcelHostileTest, protectsObjectsFromPlainAccess) {
    const sp<BBinder> binder = new BBinder;
    Parcel parcel;
    parcel.writeInt32(1);
    parcel.writeStrongBinder(binder);  // bytes 4 to 28, then the stability
    int32_t word;
    int64_t twoWords;
    for (const size_t position : {4u, 24u}) {
        parcel.setDataPosition(position);
        EXPECT_EQ(PERMISSION_DENIED, parcel.readInt32(&word)) << position;
        EXPECT_EQ(PERMISSION_DENIED, parcel.writeInt32(0)) << position;
        EXPECT_EQ(position, parcel.dataPosition());
    }
    parcel.setDataPosition(0);
    EXPECT_EQ(PERMISSION_DENIED, parcel.readInt64(&twoWords));
    EXPECT_EQ(OK, parcel.readInt32(&word));
    EXPECT_EQ(nullptr, parcel.readInplace(4));
    parcel.setDataPosition(28);
    EXPECT_EQ(OK, parcel.readInt32(&word));
    parcel.setDataPosition(4);
    EXPECT_EQ(binder, parcel.readStrongBinder());
}

TEST(ParcelHostileTest, refusesForgedStability) {
    const sp<BBinder> binder = new BBinder;
    for (const int32_t level : {0, 1, 0b000011, 0b111111, -1}) {
        Parcel parcel;
        parcel.writeStrongBinder(binder);
        parcel.setDataPosition(24);
        parcel.writeInt32(level);
        parcel.setDataPosition(0);
        EXPECT_EQ(nullptr, parcel.readStrongBinder()) << level;
    }
}

TEST(ParcelHostileTest, readsNothingBeyondTheEnd) {
    Parcel parcel;
    fill(&parcel, {1, 2, 3});
    for (const size_t position : {size_t{12}, size_t{16}, size_t{1} << 31, SIZE_MAX}) {
        int32_t word = 7;
        parcel.setDataPosition(position);
        EXPECT_EQ(NOT_ENOUGH_DATA, parcel.readInt32(&word));
        EXPECT_EQ(0, parcel.readInt32());
        EXPECT_EQ(0u, parcel.dataAvail());
        EXPECT_EQ(nullptr, parcel.readInplace(1));
        EXPECT_EQ(nullptr, parcel.readObject(false));
    }
    parcel.setDataPosition(4);
    EXPECT_EQ(nullptr, parcel.readInplace(SIZE_MAX));
    EXPECT_EQ(nullptr, parcel.readInplace(9));
    EXPECT_NE(nullptr, parcel.readInplace(7));
    Parcel other;
    EXPECT_EQ(BAD_VALUE, other.appendFrom(&parcel, 4, 9));
    EXPECT_EQ(BAD_VALUE, other.appendFrom(&parcel, SIZE_MAX, 2));
    EXPECT_EQ(BAD_VALUE, other.setDataSize(SIZE_MAX));
    EXPECT_EQ(BAD_VALUE, other.write("", SIZE_MAX));
    EXPECT_EQ(nullptr, other.writeInplace(SIZE_MAX));
    EXPECT_EQ(0u, other.dataSize());
}

TEST(ParcelHostileTest, readsExceptionHeadersWithinBounds) {
    const struct {
        std::vector<int32_t> words;
        status_t expected;
        int32_t code;
    } rows[] = {
            {{}, NOT_ENOUGH_DATA, Status::EX_TRANSACTION_FAILED},
            {{-1}, UNEXPECTED_NULL, Status::EX_TRANSACTION_FAILED},
            {{-1, 0, 0}, NOT_ENOUGH_DATA, Status::EX_TRANSACTION_FAILED},
            {{-1, 0, 0, 0}, OK, -1},
            {{-1, 0, 0, -1}, UNKNOWN_ERROR, Status::EX_TRANSACTION_FAILED},
            {{-1, 0, 0, 5, 0}, UNKNOWN_ERROR, Status::EX_TRANSACTION_FAILED},
            {{-1, 0, 0, 4, 0}, OK, -1},
            {{-8, 0, 0, 1, 0}, NOT_ENOUGH_DATA, Status::EX_TRANSACTION_FAILED},
            {{-128, 8, 0}, OK, 0},
            {{-128, 9, 0}, UNKNOWN_ERROR, Status::EX_TRANSACTION_FAILED},
            {{-128, -1}, UNKNOWN_ERROR, Status::EX_TRANSACTION_FAILED},
            // An odd size puts the message, where there may be no characters, at an odd place.
            {{-127, 5, -256, 0xff, 0, 0}, UNEXPECTED_NULL, Status::EX_TRANSACTION_FAILED},
            {{-127, 4, 0}, OK, 0},
    };
    for (size_t i = 0; i < std::size(rows); ++i) {
        Parcel parcel;
        fill(&parcel, rows[i].words);
        Status status;
        EXPECT_EQ(rows[i].expected, status.readFromParcel(parcel)) << i;
        EXPECT_EQ(rows[i].code, status.exceptionCode()) << i;
    }
}

}  // namespace
}  // namespace android
