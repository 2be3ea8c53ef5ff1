#include <limits>
#include <memory>

#include <binder/Binder.h>
#include <binder/IPCThreadState.h>
#include <binder/Parcel.h>
#include <binder/Status.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <cstring>

namespace android {
namespace {

using binder::Status;

std::vector<uint32_t> words(const Parcel& parcel) {
    std::vector<uint32_t> found(parcel.dataSize() / sizeof(uint32_t));
    if (!found.empty()) {
        memcpy(found.data(), parcel.data(), found.size() * sizeof(uint32_t));
    }
    return found;
}

TEST(ParcelTest, laysOutPlainValuesAsAndroidDoes) {
    const struct {
        void (*write)(Parcel*);
        std::vector<uint32_t> expected;
    } rows[] = {
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
            {[](Parcel* p) {
                 p->writeInt32Vector(std::vector{5, 6});
             },
             {2, 5, 6}},
            {[](Parcel* p) { p->writeInt32Vector(std::vector<int32_t>{}); }, {0}},
            {[](Parcel* p) {
                 p->writeByteVector(std::vector<uint8_t>{1, 2, 3, 4, 5});
             },
             {5, 0x04030201, 5}},
            {[](Parcel* p) {
                 p->writeBoolVector(std::vector{true, false});
             },
             {2, 1, 0}},
            {[](Parcel* p) { p->writeInt32Vector(std::unique_ptr<std::vector<int32_t>>()); },
             {0xffffffff}},
            {[](Parcel* p) { p->writeNoException(); }, {0}},
            {[](Parcel* p) { p->writeStrongBinder(nullptr); }, {0x73622a85, 0x13, 0, 0, 0, 0, 0}},
    };
    for (size_t i = 0; i < std::size(rows); ++i) {
        Parcel parcel;
        rows[i].write(&parcel);
        EXPECT_EQ(rows[i].expected, words(parcel)) << "row " << i;
    }
}

TEST(ParcelTest, headsRequestsWithPolicyWorkSourceAndPartition) {
    Parcel parcel;
    parcel.writeInterfaceToken(String16("a"));
    EXPECT_EQ((std::vector<uint32_t>{0x80000000, 0xffffffff, 0x53595354, 1, 'a'}), words(parcel));

    IPCThreadState* thread = IPCThreadState::self();
    const int64_t token = thread->setCallingWorkSourceUid(1234);
    Parcel attributed;
    attributed.writeInterfaceToken(String16("a"));
    thread->restoreCallingWorkSource(token);
    EXPECT_EQ(1234u, words(attributed)[1]);
    EXPECT_FALSE(thread->shouldPropagateWorkSource());
    EXPECT_EQ(1234u, attributed.readCallingWorkSourceUid());
    EXPECT_TRUE(attributed.replaceCallingWorkSourceUid(77));
    EXPECT_EQ(77u, words(attributed)[1]);

    attributed.setDataPosition(0);
    EXPECT_TRUE(attributed.enforceInterface(String16("a")));
    EXPECT_EQ(77u, thread->getCallingWorkSourceUid());
    for (const char* other : {"b", "aa", ""}) {
        attributed.setDataPosition(0);
        EXPECT_FALSE(attributed.enforceInterface(String16(other))) << other;
    }
}

TEST(ParcelTest, givesBackWhatWasWritten) {
    const std::string text = "a\xe2\x82\xac\xf0\x9f\x8c\xa1";
    const auto names = std::vector<std::string>{"", text};
    Parcel parcel;
    parcel.writeDouble(-0.5);
    parcel.writeUint64(UINT64_MAX);
    parcel.writeUtf8AsUtf16(text);
    parcel.writeString8(String8(text.c_str()));
    parcel.writeUtf8VectorAsUtf16Vector(names);
    parcel.writeDoubleVector(std::vector{1.5, 2.5});
    parcel.writeString16Vector(std::vector{String16("x"), String16()});
    parcel.writeCharVector(std::vector{u'a', u'\uffff'});
    parcel.writeBoolVector(std::make_unique<std::vector<bool>>(2, true));
    parcel.writeCString("end");

    parcel.setDataPosition(0);
    EXPECT_EQ(-0.5, parcel.readDouble());
    EXPECT_EQ(UINT64_MAX, parcel.readUint64());
    std::string found;
    EXPECT_EQ(OK, parcel.readUtf8FromUtf16(&found));
    EXPECT_EQ(text, found);
    EXPECT_STREQ(text.c_str(), parcel.readString8().string());
    std::unique_ptr<std::vector<std::unique_ptr<std::string>>> foundNames;
    EXPECT_EQ(OK, parcel.readUtf8VectorFromUtf16Vector(&foundNames));
    ASSERT_EQ(2u, foundNames->size());
    EXPECT_EQ(text, *foundNames->at(1));
    std::vector<double> numbers{9.0};
    EXPECT_EQ(OK, parcel.readDoubleVector(&numbers));
    EXPECT_EQ((std::vector{1.5, 2.5}), numbers);
    std::vector<String16> strings;
    EXPECT_EQ(OK, parcel.readString16Vector(&strings));
    EXPECT_EQ((std::vector{String16("x"), String16()}), strings);
    std::vector<char16_t> characters;
    EXPECT_EQ(OK, parcel.readCharVector(&characters));
    EXPECT_EQ((std::vector{u'a', u'\uffff'}), characters);
    std::unique_ptr<std::vector<bool>> flags;
    EXPECT_EQ(OK, parcel.readBoolVector(&flags));
    EXPECT_EQ(std::vector(2, true), *flags);
    EXPECT_STREQ("end", parcel.readCString());
    EXPECT_EQ(0u, parcel.dataAvail());
}

TEST(ParcelTest, tellsNullFromEmpty) {
    Parcel parcel;
    parcel.writeString16(std::unique_ptr<String16>());
    parcel.writeString16(std::make_unique<String16>());
    parcel.writeByteVector(std::unique_ptr<std::vector<uint8_t>>());
    parcel.writeByteVector(std::make_unique<std::vector<uint8_t>>());
    parcel.setDataPosition(0);
    auto string = std::make_unique<String16>("before");
    EXPECT_EQ(OK, parcel.readString16(&string));
    EXPECT_EQ(nullptr, string);
    EXPECT_EQ(OK, parcel.readString16(&string));
    EXPECT_EQ(String16(), *string);
    std::unique_ptr<std::vector<uint8_t>> bytes;
    EXPECT_EQ(OK, parcel.readByteVector(&bytes));
    EXPECT_EQ(nullptr, bytes);
    EXPECT_EQ(OK, parcel.readByteVector(&bytes));
    EXPECT_TRUE(bytes->empty());
}

TEST(ParcelTest, holdsBindersUntilItIsReleased) {
    const sp<BBinder> binder = new BBinder;
    {
        Parcel parcel;
        parcel.writeInt32(1);  // puts the object at a position that is no multiple of eight
        ASSERT_EQ(OK, parcel.writeStrongBinder(binder));
        ASSERT_EQ(OK, parcel.writeStrongBinder(nullptr));
        EXPECT_EQ(2, binder->getStrongCount());
        EXPECT_EQ(1u, parcel.objectsCount());

        Parcel copy;
        ASSERT_EQ(OK, copy.appendFrom(&parcel, 4, parcel.dataSize() - 4));
        ASSERT_EQ(OK, copy.appendFrom(&parcel, 4, 20));  // cut: no object any more
        EXPECT_EQ(3, binder->getStrongCount());
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

TEST(ParcelTest, marksBindersAsOfTheSystem) {
    Parcel parcel;
    parcel.writeStrongBinder(new BBinder);
    const std::vector<uint32_t> found = words(parcel);
    ASSERT_EQ(7u, found.size());
    EXPECT_EQ(0x73622a85u, found[0]);
    EXPECT_EQ(0x113u, found[1]);
    EXPECT_EQ(0b001100u, found[6]);
}

TEST(ParcelTest, appendsItselfAndZeroesGaps) {
    const sp<BBinder> binder = new BBinder;
    Parcel parcel;
    parcel.writeStrongBinder(binder);
    const size_t once = parcel.dataSize();
    EXPECT_EQ(OK, parcel.appendFrom(&parcel, 0, once));
    EXPECT_EQ(3, binder->getStrongCount());
    parcel.setDataPosition(once);
    EXPECT_EQ(binder, parcel.readStrongBinder());
    parcel.setDataPosition(2 * once + 8);
    parcel.writeInt32(5);
    parcel.setDataPosition(2 * once);
    EXPECT_EQ(0, parcel.readInt64());
    EXPECT_EQ(5, parcel.readInt32());
}

TEST(ParcelTest, ownsDuplicatedDescriptors) {
    int ends[2];
    ASSERT_EQ(0, pipe(ends));
    int inside = -1;
    {
        Parcel parcel;
        EXPECT_FALSE(parcel.hasFileDescriptors());
        ASSERT_EQ(OK, parcel.writeDupFileDescriptor(ends[0]));
        EXPECT_TRUE(parcel.hasFileDescriptors());
        Parcel closed;
        closed.pushAllowFds(false);
        EXPECT_EQ(FDS_NOT_ALLOWED, closed.appendFrom(&parcel, 0, parcel.dataSize()));
        EXPECT_EQ(FDS_NOT_ALLOWED, closed.writeDupFileDescriptor(ends[0]));
        parcel.setDataPosition(0);
        inside = parcel.readFileDescriptor();
        EXPECT_NE(ends[0], inside);
        parcel.setDataPosition(0);
        base::unique_fd own;
        EXPECT_EQ(OK, parcel.readUniqueFileDescriptor(&own));
        EXPECT_EQ(-EBADF, parcel.writeDupFileDescriptor(-1));
    }
    EXPECT_EQ(-1, close(inside));
    close(ends[0]);
    close(ends[1]);
}

TEST(ParcelTest, carriesExceptions) {
    const struct {
        Status status;
        int32_t code, serviceError;
    } rows[] = {{Status::ok(), 0, 0},
                {Status::fromExceptionCode(Status::EX_SECURITY, "no"), -1, 0},
                {Status::fromServiceSpecificError(42, "why"), Status::EX_SERVICE_SPECIFIC, 42}};
    for (const auto& row : rows) {
        Parcel parcel;
        ASSERT_EQ(OK, row.status.writeToParcel(&parcel));
        parcel.writeInt32(99);
        parcel.setDataPosition(0);
        Status found;
        EXPECT_EQ(OK, found.readFromParcel(parcel));
        EXPECT_EQ(row.code, found.exceptionCode());
        EXPECT_EQ(row.serviceError, found.serviceSpecificErrorCode());
        EXPECT_EQ(row.status.exceptionMessage(), found.exceptionMessage());
        EXPECT_EQ(99, parcel.readInt32());
        parcel.setDataPosition(0);
        EXPECT_EQ(row.code, parcel.readExceptionCode());
    }
    Parcel unwritten;
    EXPECT_EQ(DEAD_OBJECT, Status::fromStatusT(DEAD_OBJECT).writeToParcel(&unwritten));
    EXPECT_EQ(0u, unwritten.dataSize());
}

}  // namespace
}  // namespace android
