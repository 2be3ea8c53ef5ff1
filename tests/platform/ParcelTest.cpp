#include <binder/Binder.h>
#include <binder/Parcel.h>
#include <binder/Status.h>
#include <gtest/gtest.h>

#include <cstring>

namespace android {
namespace {

using binder::Status;

constexpr size_t kObjectBytes = 24;  // of a binder, before its stability word

std::vector<uint32_t> words(const Parcel& parcel) {
    std::vector<uint32_t> found(parcel.dataSize() / sizeof(uint32_t));
    if (!found.empty()) {
        memcpy(found.data(), parcel.data(), found.size() * sizeof(uint32_t));
    }
    return found;
}

const std::vector<int32_t> kNumbers{5, 6};
const std::vector<uint8_t> kBytes{1, 2, 3, 4, 5};
const std::vector<bool> kFlags{true, false};

TEST(ParcelTest, laysOutPlainValuesAsAndroidDoes) {
    const std::pair<void (*)(Parcel*), std::vector<uint32_t>> rows[] = {
            {[](Parcel* p) { p->writeInt64(-2); }, {0xfffffffe, 0xffffffff}},
            {[](Parcel* p) { p->writeFloat(1.0f); }, {0x3f800000}},
            {[](Parcel* p) { p->writeBool(true), p->writeByte(-1); }, {1, 0xffffffff}},
            {[](Parcel* p) { p->writeChar(u'\uffff'); }, {0xffff}},
            {[](Parcel* p) { p->writeString16(String16("ab")); }, {2, 0x00620061, 0}},
            {[](Parcel* p) { p->writeString16(String16()); }, {0, 0}},
            {[](Parcel* p) { p->writeString16(nullptr, 0); }, {0xffffffff}},
            {[](Parcel* p) { p->writeString8(String8("abcd")); }, {4, 0x64636261, 0}},
            {[](Parcel* p) { p->writeCString("abc"); }, {0x00636261}},
            {[](Parcel* p) { p->writeUtf8AsUtf16(std::string("\xc3\xa4")); }, {1, 0xe4}},
            {[](Parcel* p) { p->writeInt32Vector(kNumbers); }, {2, 5, 6}},
            {[](Parcel* p) { p->writeByteVector(kBytes); }, {5, 0x04030201, 5}},
            {[](Parcel* p) { p->writeBoolVector(kFlags); }, {2, 1, 0}},
            {[](Parcel* p) { p->writeInt32Vector(std::vector<int32_t>{}); }, {0}},
            {[](Parcel* p) { p->writeNoException(); }, {0}},
            {[](Parcel* p) { Status::fromStatusT(DEAD_OBJECT).writeToParcel(p); }, {}},
            {[](Parcel* p) { Status::fromExceptionCode(-1, "n").writeToParcel(p); },
             {0xffffffff, 1, 'n', 0}},
            {[](Parcel* p) { Status::fromServiceSpecificError(42, "n").writeToParcel(p); },
             {0xfffffff8, 1, 'n', 0, 42}},
            {[](Parcel* p) { p->writeStrongBinder(nullptr); }, {0x73622a85, 0x13, 0, 0, 0, 0, 0}},
    };
    for (const auto& [write, expected] : rows) {
        Parcel parcel;
        write(&parcel);
        EXPECT_EQ(expected, words(parcel));
    }
}

TEST(ParcelTest, headsRequestsWithPolicyWorkSourceAndPartition) {
    Parcel parcel;
    parcel.writeInterfaceToken(String16("a"));
    EXPECT_EQ((std::vector<uint32_t>{0x80000000, 0xffffffff, 0x53595354, 1, 'a'}), words(parcel));
    for (const char* name : {"b", "aa", "", "a"}) {
        parcel.setDataPosition(0);
        EXPECT_EQ(name == std::string("a"), parcel.enforceInterface(String16(name))) << name;
    }
}

template <typename T>
void expectBack(status_t (Parcel::*write)(const T&), status_t (Parcel::*read)(T*) const,
                const T& value) {
    Parcel parcel;
    EXPECT_EQ(OK, (parcel.*write)(value));
    parcel.setDataPosition(0);
    T found;
    EXPECT_EQ(OK, (parcel.*read)(&found));
    EXPECT_EQ(value, found);
    EXPECT_EQ(0u, parcel.dataAvail());
}

TEST(ParcelTest, givesBackWhatWasWritten) {
    const std::string text = "a\xe2\x82\xac\xf0\x9f\x8c\xa1";
    expectBack<std::string>(&Parcel::writeUtf8AsUtf16, &Parcel::readUtf8FromUtf16, text);
    expectBack<String8>(&Parcel::writeString8, &Parcel::readString8, String8(text.c_str()));
    expectBack<std::vector<std::string>>(&Parcel::writeUtf8VectorAsUtf16Vector,
                                         &Parcel::readUtf8VectorFromUtf16Vector, {"", text});
    expectBack<std::vector<bool>>(&Parcel::writeBoolVector, &Parcel::readBoolVector, kFlags);
}

TEST(ParcelTest, holdsBindersUntilItIsReleased) {
    const sp<BBinder> binder = new BBinder;
    {
        Parcel parcel;
        parcel.writeInt32(1);  // puts the object at a position that is no multiple of eight
        ASSERT_EQ(OK, parcel.writeStrongBinder(binder));
        ASSERT_EQ(OK, parcel.writeStrongBinder(nullptr));
        EXPECT_EQ(0x113u, words(parcel)[2]) << "nice value 19, takes descriptors";
        EXPECT_EQ(0b001100u, words(parcel)[7]) << "not of the system's stability";
        EXPECT_EQ(2, binder->getStrongCount());

        Parcel copy;
        ASSERT_EQ(OK, copy.appendFrom(&parcel, 4, parcel.dataSize() - 4));
        ASSERT_EQ(OK, copy.appendFrom(&parcel, 4, 20));  // cut: no object any more
        ASSERT_EQ(OK, copy.appendFrom(&copy, 0, 28));
        EXPECT_EQ(4, binder->getStrongCount());
        copy.setDataPosition(0);
        EXPECT_EQ(binder, copy.readStrongBinder());
        sp<IBinder> none = binder;
        EXPECT_EQ(OK, copy.readNullableStrongBinder(&none));
        EXPECT_EQ(nullptr, none);
        EXPECT_EQ(BAD_TYPE, copy.readNullableStrongBinder(&none));

        EXPECT_EQ(OK, copy.setDataSize(23));
        EXPECT_EQ(2, binder->getStrongCount());
        parcel.setDataPosition(32);
        EXPECT_EQ(UNEXPECTED_NULL, parcel.readStrongBinder(&none));
    }
    EXPECT_EQ(1, binder->getStrongCount());
}

TEST(ParcelTest, readsTheLowerHalfOfAStabilityWord) {
    const std::pair<uint32_t, status_t> rows[] = {
            {0b001100, OK},          {0x0001'000c, OK},       {0xffff'000c, OK},
            {0b000011, BAD_TYPE},    {0x0c00'0001, BAD_TYPE}, {0, BAD_TYPE},
            {1, BAD_TYPE},           {0xffff'ffff, BAD_TYPE}, {0b111111, BAD_TYPE},
            {0x0003'0000, BAD_TYPE}, {0x0000'800c, BAD_TYPE}};
    for (const auto& [word, status] : rows) {
        Parcel parcel;
        parcel.writeStrongBinder(new BBinder);  // of the system
        parcel.setDataPosition(kObjectBytes);
        parcel.writeUint32(word);
        parcel.setDataPosition(0);
        sp<IBinder> binder;
        EXPECT_EQ(status, parcel.readStrongBinder(&binder)) << std::hex << word;
    }
}

}  // namespace
}  // namespace android
