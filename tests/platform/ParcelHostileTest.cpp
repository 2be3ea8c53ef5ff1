#include <binder/Binder.h>
#include <binder/Parcel.h>
#include <binder/Status.h>
#include <gtest/gtest.h>

namespace android {
namespace {

using binder::Status;

/** As another process could fill it: with words that mean nothing, and no objects. */
struct ForeignParcel : Parcel {
    explicit ForeignParcel(const std::vector<int32_t>& words) {
        setData(reinterpret_cast<const uint8_t*>(words.data()), words.size() * sizeof(int32_t));
    }
};

template <typename T>
void expectRefusedCounts(status_t (Parcel::*read)(std::vector<T>*) const) {
    const std::pair<status_t, std::vector<std::vector<int32_t>>> rows[] = {
            {NOT_ENOUGH_DATA, {{}, {1}, {INT32_MAX, 0, 0}, {0x40000000, 0, 0}}},
            {UNEXPECTED_NULL, {{-1}, {INT32_MIN}}},
            {OK, {{0}}}};
    for (const auto& [status, parcels] : rows) {
        for (const std::vector<int32_t>& words : parcels) {
            std::vector<T> values(3);
            EXPECT_EQ(status, (ForeignParcel(words).*read)(&values))
                    << testing::PrintToString(words);
            EXPECT_TRUE(values.empty());
            EXPECT_LE(values.capacity(), 4096u);
        }
    }
}

TEST(ParcelHostileTest, refusesCountsThatTheRestCannotHold) {
    expectRefusedCounts<int8_t>(&Parcel::readByteVector);
    expectRefusedCounts<int32_t>(&Parcel::readInt32Vector);
    expectRefusedCounts<int64_t>(&Parcel::readInt64Vector);
    expectRefusedCounts<bool>(&Parcel::readBoolVector);
    expectRefusedCounts<String16>(&Parcel::readString16Vector);
    expectRefusedCounts<std::string>(&Parcel::readUtf8VectorFromUtf16Vector);
    expectRefusedCounts<sp<IBinder>>(&Parcel::readStrongBinderVector);
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
    for (const std::vector<int32_t>& words : rows) {
        const ForeignParcel parcel(words);
        String16 string("before");
        EXPECT_EQ(UNEXPECTED_NULL, parcel.readString16(&string)) << testing::PrintToString(words);
        EXPECT_EQ(String16(), string);
        parcel.setDataPosition(0);
        std::string text;
        EXPECT_EQ(UNEXPECTED_NULL, parcel.readUtf8FromUtf16(&text));
    }
    EXPECT_EQ(nullptr, ForeignParcel({0x61616161}).readCString());
    EXPECT_EQ(String8(), ForeignParcel({3, 0x61616161}).readString8());
}

TEST(ParcelHostileTest, convertsBrokenTextWithoutHarm) {
    const ForeignParcel parcel({2, 0x0061d83c, 0, 1, 0xdf21});  // lone halves of surrogate pairs
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
    honest.writeFileDescriptor(0);  // at byte 28
    Parcel forged;
    ASSERT_EQ(OK, forged.setData(honest.data(), honest.dataSize()));
    EXPECT_EQ(nullptr, forged.readStrongBinder());
    forged.setDataPosition(28);
    EXPECT_EQ(BAD_TYPE, forged.readFileDescriptor());
    forged.freeData();
    EXPECT_EQ(2, binder->getStrongCount());
    // An object is not taken for one of another kind, or from its middle.
    honest.setDataPosition(0);
    EXPECT_EQ(BAD_TYPE, honest.readFileDescriptor());
    for (const size_t position : {4u, 28u}) {
        honest.setDataPosition(position);
        EXPECT_EQ(nullptr, honest.readStrongBinder()) << position;
    }
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

TEST(ParcelHostileTest, readsToTheEndAndNotBeyond) {
    const ForeignParcel parcel({1, 2, 0x3f800000});
    EXPECT_EQ(0x200000001, parcel.readInt64());
    EXPECT_EQ(1.0f, parcel.readFloat());
    for (const size_t position : {size_t{12}, size_t{16}, size_t{1} << 31, SIZE_MAX}) {
        int32_t word = 7;
        parcel.setDataPosition(position);
        EXPECT_EQ(NOT_ENOUGH_DATA, parcel.readInt32(&word));
        EXPECT_EQ(0u, parcel.dataAvail());
        EXPECT_EQ(nullptr, parcel.readInplace(1));
        EXPECT_EQ(nullptr, parcel.readObject(false));
    }
    parcel.setDataPosition(4);
    EXPECT_EQ(nullptr, parcel.readInplace(SIZE_MAX));
    EXPECT_EQ(nullptr, parcel.readInplace(9));
    EXPECT_NE(nullptr, parcel.readInplace(7));
    EXPECT_EQ(BAD_VALUE, Parcel().appendFrom(&parcel, 4, 9));
    EXPECT_EQ(BAD_VALUE, Parcel().appendFrom(&parcel, SIZE_MAX, 2));
}

TEST(ParcelHostileTest, readsExceptionHeadersWithinBounds) {
    const std::pair<status_t, std::vector<std::vector<int32_t>>> refused[] = {
            {NOT_ENOUGH_DATA, {{}, {-1, 0, 0}, {-8, 0, 0, 1, 0}}},
            {UNKNOWN_ERROR, {{-1, 0, 0, -1}, {-1, 0, 0, 5, 0}, {-128, 9, 0}, {-128, -1}}},
            // An odd size puts the message, where there may be no characters, at an odd place.
            {UNEXPECTED_NULL, {{-1}, {-127, 5, -256, 0xff, 0, 0}}}};
    Status status;
    for (const auto& [expected, parcels] : refused) {
        for (const std::vector<int32_t>& words : parcels) {
            EXPECT_EQ(expected, status.readFromParcel(ForeignParcel(words)))
                    << testing::PrintToString(words);
            EXPECT_EQ(Status::EX_TRANSACTION_FAILED, status.exceptionCode());
        }
    }
    const std::pair<int32_t, std::vector<int32_t>> taken[] = {{-1, {-1, 0, 0, 0}},
                                                              {-1, {-1, 0, 0, 4, 0}},
                                                              {0, {-128, 8, 0}},
                                                              {0, {-127, 4, 0}},
                                                              {-8, {-8, 1, 'n', 0, 42}}};
    for (const auto& [code, words] : taken) {
        EXPECT_EQ(OK, status.readFromParcel(ForeignParcel(words)));
        EXPECT_EQ(code, status.exceptionCode()) << testing::PrintToString(words);
    }
    EXPECT_EQ(42, status.serviceSpecificErrorCode());
    EXPECT_EQ("n", status.exceptionMessage());
}

}  // namespace
}  // namespace android
