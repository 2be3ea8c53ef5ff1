#include "ProtocolTest.h"

#include <binder/IServiceManager.h>
#include <fcntl.h>
#include <unistd.h>

#include <array>

#include "BinderProtocol.h"

namespace android {
namespace {

using ObjectTest = ProtocolTest;

TEST_F(ObjectTest, keepBinderIdentity) {
    const sp<IBinder> local = new BBinder;
    swapBinder(mServer, kKeep, local);
    EXPECT_EQ(local, swapBinder(mServer, kKept));
    const sp<IBinder> remote = swapBinder(mServer, kNewObject);
    ASSERT_NE(nullptr, remote);
    EXPECT_NE(nullptr, remote->remoteBinder());
    EXPECT_NE(remote, swapBinder(mServer, kNewObject));
    swapBinder(mServer, kKeep, remote);
    EXPECT_EQ(remote, swapBinder(mServer, kKept));
    swapBinder(mServer, kKeep);
    EXPECT_EQ(nullptr, swapBinder(mServer, kKept));
    for (const sp<IBinder>& binder : {local, remote}) {
        Parcel data;
        Parcel reply;
        data.writeStrongBinder(binder);
        EXPECT_EQ(OK, mServer->transact(kIsLocal, data, &reply));
        EXPECT_EQ(binder == remote, reply.readBool());
    }
}

TEST_F(ObjectTest, travelBackWithAndroidsFlags) {
    Parcel parcel;
    parcel.writeStrongBinder(mServer);
    parcel.setDataPosition(0);
    const flat_binder_object* const object = parcel.readObject(false);
    ASSERT_NE(nullptr, object);
    EXPECT_EQ(uint32_t{BINDER_TYPE_HANDLE}, object->hdr.type);
    EXPECT_EQ(0x13u, object->flags) << "nice value 19; only its owner says what a binder takes";
}

TEST_F(ObjectTest, endWithTheirLastReference) {
    sp<IBinder> remote = swapBinder(mServer, kNewObject);
    sp<IBinder> other = swapBinder(mServer, kNewObject);
    swapBinder(mServer, kKeep, other);
    other.clear();
    EXPECT_EQ(2, ask(mServer, kLiveCount).value);
    remote.clear();
    EXPECT_TRUE(eventually([&] { return ask(mServer, kLiveCount).value == 1; }));
    sp<IBinder> local = new BBinder;
    const wp<IBinder> watched = local;
    swapBinder(mServer, kKeep, local);
    local.clear();
    EXPECT_TRUE(eventually([&] { return ask(mServer, kLiveCount).value == 0; }));
    EXPECT_NE(nullptr, watched.promote());
    swapBinder(mServer, kKeep);
    EXPECT_TRUE(eventually([&] { return watched.promote() == nullptr; }));
}

TEST_F(ObjectTest, carryDescriptors) {
    constexpr int32_t kCount = 60;
    // Each of a process's binder threads may have descriptors: this one has only one.
    startServer("single", 0);
    mServer = defaultServiceManager()->checkService(String16("single"));
    const int32_t before = openDescriptors();
    const int32_t beforeThere = ask(mServer, kFdCount).value;
    {
        Parcel data;
        Parcel reply;
        data.writeInt32(kCount);
        for (int32_t i = 0; i < kCount; ++i) {
            std::array<int, 2> ends{};
            ASSERT_EQ(0, pipe(ends.data()));
            data.writeFileDescriptor(ends[0], true);
            const char byte = static_cast<char>('0' + i);
            ASSERT_EQ(1, write(ends[1], &byte, 1));
            close(ends[1]);
        }
        ASSERT_EQ(OK, mServer->transact(kReadFds, data, &reply));
        std::string bytes;
        ASSERT_EQ(OK, reply.readUtf8FromUtf16(&bytes));
        ASSERT_EQ(static_cast<size_t>(kCount), bytes.size());
        for (int32_t i = 0; i < kCount; ++i) {
            EXPECT_EQ('0' + i, bytes[static_cast<size_t>(i)]);
        }
        Parcel pipe;
        ASSERT_EQ(OK, mServer->transact(kPipe, Parcel(), &pipe));
        const int fd = pipe.readFileDescriptor();
        std::array<char, 8> text{};
        EXPECT_EQ(5, read(fd, text.data(), text.size()));
        EXPECT_STREQ("hello", text.data());
        EXPECT_EQ(FD_CLOEXEC, fcntl(fd, F_GETFD));
    }
    EXPECT_EQ(before, openDescriptors());
    EXPECT_EQ(beforeThere, ask(mServer, kFdCount).value);
}

flat_binder_object rawObject(uint32_t type, uint32_t handle) {
    flat_binder_object object{};
    object.hdr.type = type;
    object.handle = handle;
    return object;
}

TEST_F(ObjectTest, areRefusedWhenForged) {
    const flat_binder_object rows[] = {
            rawObject(BINDER_TYPE_HANDLE, 12345), rawObject(BINDER_TYPE_WEAK_HANDLE, 54321),
            rawObject(BINDER_TYPE_FD, 9999), rawObject(BINDER_TYPE_PTR, 0),
            rawObject(B_PACK_CHARS('x', 'y', 'z', '!'), 0)};
    for (const flat_binder_object& object : rows) {
        Parcel data;
        Parcel reply;
        const status_t written = data.writeObject(object, true);
        EXPECT_NE(OK, written == OK ? mServer->transact(kKeep, data, &reply) : written)
                << object.hdr.type;
        EXPECT_EQ(5, ask(mServer, kAdd, {2, 3}).value) << object.hdr.type;
    }
}

}  // namespace
}  // namespace android
