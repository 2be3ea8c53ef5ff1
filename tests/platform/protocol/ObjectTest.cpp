#include "ProtocolTest.h"

#include <android-base/file.h>
#include <android-base/unique_fd.h>
#include <binder/IServiceManager.h>
#include <fcntl.h>
#include <unistd.h>

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
        std::string sent;
        for (int32_t i = 0; i < kCount; ++i) {
            sent.push_back(static_cast<char>('0' + i));
            base::unique_fd in, out;
            ASSERT_TRUE(base::Pipe(&in, &out));
            data.writeFileDescriptor(in.release(), true);
            ASSERT_EQ(1, write(out.get(), &sent.back(), 1));
        }
        ASSERT_EQ(OK, mServer->transact(kGatherFds, data, &reply));
        const int fd = reply.readFileDescriptor();
        std::string received;
        EXPECT_TRUE(base::ReadFdToString(fd, &received));
        EXPECT_EQ(sent, received);
        EXPECT_EQ(FD_CLOEXEC, fcntl(fd, F_GETFD));
    }
    EXPECT_EQ(before, openDescriptors());
    EXPECT_EQ(beforeThere, ask(mServer, kFdCount).value);
}

TEST_F(ObjectTest, areRefusedWhenForged) {
    const std::pair<uint32_t, uint32_t> rows[] = {{BINDER_TYPE_HANDLE, 12345},
                                                  {BINDER_TYPE_WEAK_HANDLE, 54321},
                                                  {BINDER_TYPE_FD, 9999},
                                                  {BINDER_TYPE_PTR, 0},
                                                  {B_PACK_CHARS('x', 'y', 'z', '!'), 0}};
    for (const auto& [type, handle] : rows) {
        const flat_binder_object forged = {
                .hdr = {type}, .flags = 0, .handle = handle, .cookie = 0};
        Parcel data;
        Parcel reply;
        const status_t written = data.writeObject(forged, true);
        EXPECT_NE(OK, written == OK ? mServer->transact(kKeep, data, &reply) : written) << type;
        EXPECT_EQ(5, ask(mServer, kAdd, {2, 3}).value) << type;
    }
}

}  // namespace
}  // namespace android
