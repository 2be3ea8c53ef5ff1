#include <binder/Binder.h>
#include <binder/Parcel.h>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include "BinderProtocol.h"

namespace android {
namespace {

using ReleaseFunction = void (*)(Parcel*, const uint8_t*, size_t, const binder_size_t*, size_t,
                                 void*);

// Only libbinder itself lends memory to a parcel; an explicit instantiation may name what it calls.
template <typename Tag, typename Tag::Member kMember>
struct Naming {
    friend typename Tag::Member memberOf(Tag) { return kMember; }
};
struct Lending {
    using Member = void (Parcel::*)(const uint8_t*, size_t, const binder_size_t*, size_t,
                                    ReleaseFunction, void*);
    friend Member memberOf(Lending);
};
template struct Naming<Lending, &Parcel::ipcSetDataReference>;

/** What a driver lends: read-only for the parcel, given back once. */
struct LentParcelTest : testing::Test {
    template <typename T>
    void put(const T& value) {
        const auto* bytes = reinterpret_cast<const uint8_t*>(&value);
        mData.insert(mData.end(), bytes, bytes + sizeof(value));
    }

    void putObject(uint32_t type, uint64_t value, uint64_t cookie) {
        mObjects.push_back(mData.size());
        put(flat_binder_object{.hdr = {type}, .flags = 0, .binder = value, .cookie = cookie});
    }

    void lend(Parcel* parcel) {
        mLent = mData;
        (parcel->*memberOf(Lending()))(mLent.data(), mLent.size(), mObjects.data(), mObjects.size(),
                                       release, this);
    }

    static void release(Parcel* parcel, const uint8_t*, size_t, const binder_size_t*, size_t,
                        void* cookie) {
        auto* self = static_cast<LentParcelTest*>(cookie);
        ++(parcel != nullptr ? self->mEnded : self->mCopied);
    }

    std::vector<uint8_t> mData;
    std::vector<uint8_t> mLent;
    std::vector<binder_size_t> mObjects;
    int mEnded = 0;
    int mCopied = 0;
};

TEST_F(LentParcelTest, isCopiedBeforeItIsWritten) {
    Parcel parcel;
    lend(&parcel);  // nothing
    ASSERT_EQ(OK, parcel.writeInt32(5));
    parcel.setDataPosition(0);
    EXPECT_EQ(5, parcel.readInt32());
    EXPECT_EQ(1, mCopied);
    put(int32_t{1});
    put(int32_t{2});
    lend(&parcel);
    EXPECT_EQ(1, parcel.readInt32());
    EXPECT_EQ(1, mCopied);
    ASSERT_EQ(OK, parcel.writeInt32(7));  // within the data
    EXPECT_EQ(2, mCopied);
    parcel.setDataPosition(0);
    EXPECT_EQ(1, parcel.readInt32());
    EXPECT_EQ(7, parcel.readInt32());
    EXPECT_EQ(mData, mLent);
    lend(&parcel);
    ASSERT_EQ(OK, parcel.setDataSize(4));
    EXPECT_EQ(3, mCopied);
    lend(&parcel);
    parcel.freeData();
    EXPECT_EQ(1, mEnded);
}

TEST_F(LentParcelTest, givesTheDataAndNoObjectWhenOneIsOfAnotherKind) {
    const sp<BBinder> binder = new BBinder;
    for (const uint32_t type : {BINDER_TYPE_BINDER, BINDER_TYPE_BINDER, BINDER_TYPE_PTR}) {
        putObject(type, 1, reinterpret_cast<uintptr_t>(binder.get()));
    }
    // Unaligned, out of order, twice, overlapping, cut by the end, behind it, far, another
    // library's.
    const std::vector<binder_size_t> lists[] = {{2},  {24, 0}, {0, 0},         {0, 20},
                                                {52}, {1000},  {~uint64_t{3}}, {0, 48}};
    for (const std::vector<binder_size_t>& list : lists) {
        mObjects = list;
        mEnded = 0;
        {
            Parcel parcel;
            lend(&parcel);
            EXPECT_EQ(OK, parcel.errorCheck()) << list.back();
            EXPECT_EQ(nullptr, parcel.readStrongBinder()) << list.back();
            EXPECT_EQ(0u, parcel.objectsCount()) << list.back();
            EXPECT_EQ(int32_t{BINDER_TYPE_BINDER}, parcel.readInt32()) << list.back();
        }
        EXPECT_EQ(1, mEnded) << list.back();
    }
}

TEST_F(LentParcelTest, closesDescriptorsThatNobodyCanRead) {
    for (const uint32_t other :
         {BINDER_TYPE_FDA, BINDER_TYPE_PTR, BINDER_TYPE_WEAK_BINDER, BINDER_TYPE_WEAK_HANDLE}) {
        const int fd = open("/dev/null", O_RDONLY | O_CLOEXEC);
        mData.clear();
        mObjects.clear();
        putObject(BINDER_TYPE_FD, static_cast<uint64_t>(fd), 0);
        putObject(other, 0, 0);
        Parcel parcel;
        lend(&parcel);
        EXPECT_EQ(BAD_TYPE, parcel.readFileDescriptor()) << other;
        EXPECT_EQ(-1, fcntl(fd, F_GETFD)) << other;
    }
}

TEST_F(LentParcelTest, ownsWhatItCopied) {
    int ends[2];
    ASSERT_EQ(0, pipe2(ends, O_CLOEXEC));
    sp<BBinder> binder = new BBinder;
    const wp<BBinder> remembered = binder;
    putObject(BINDER_TYPE_BINDER, reinterpret_cast<uintptr_t>(binder->getWeakRefs()),
              reinterpret_cast<uintptr_t>(static_cast<IBinder*>(binder.get())));
    put(int32_t{0b001100});  // system stability
    putObject(BINDER_TYPE_FD, static_cast<uint64_t>(ends[0]), 0);
    Parcel elsewhere;
    {
        Parcel parcel;
        lend(&parcel);
        EXPECT_TRUE(parcel.hasFileDescriptors());
        ASSERT_EQ(OK, elsewhere.appendFrom(&parcel, 0, parcel.dataSize()));
        parcel.setDataPosition(parcel.dataSize());
        ASSERT_EQ(OK, parcel.writeInt32(3));
        binder = nullptr;  // the parcels hold it
        parcel.setDataPosition(0);
        EXPECT_EQ(remembered.promote(), parcel.readStrongBinder());
        EXPECT_EQ(ends[0], parcel.readFileDescriptor());
    }
    EXPECT_EQ(-1, fcntl(ends[0], F_GETFD)) << "closed with the parcel that copied it";
    elsewhere.setDataPosition(28);
    const int copy = elsewhere.readFileDescriptor();
    EXPECT_NE(-1, fcntl(copy, F_GETFD));
    elsewhere.closeFileDescriptors();
    EXPECT_EQ(-1, fcntl(copy, F_GETFD));
    const int reused = fcntl(ends[1], F_DUPFD_CLOEXEC, copy);
    elsewhere.freeData();
    EXPECT_NE(-1, fcntl(reused, F_GETFD)) << "a descriptor is closed once";
    EXPECT_EQ(nullptr, remembered.promote());
    close(reused);
    close(ends[1]);
}

}  // namespace
}  // namespace android
