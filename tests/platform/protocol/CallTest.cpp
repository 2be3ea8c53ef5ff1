#include "ProtocolTest.h"

#include <binder/IServiceManager.h>
#include <unistd.h>

#include <algorithm>
#include <thread>

#include "support/Files.h"

namespace android {
namespace {

using CallTest = ProtocolTest;
using LimitTest = ProtocolTest;

TEST_F(CallTest, returnsResultsAndErrors) {
    EXPECT_EQ(7, ask(mServer, kAdd, {3, 4}).value);
    for (const status_t status :
         {status_t{OK}, status_t{BAD_VALUE}, status_t{PERMISSION_DENIED}, -12345}) {
        EXPECT_EQ(status, ask(mServer, kFail, {status}).status);
    }
    EXPECT_EQ(UNKNOWN_TRANSACTION, ask(mServer, 4711).status);
    EXPECT_EQ(OK, ask(mServer, kFail, {BAD_VALUE}, IBinder::FLAG_ONEWAY).status);
    EXPECT_EQ(7, ask(mServer, kAdd, {3, 4}).value);
}

TEST_F(CallTest, tellsWhoCalls) {
    Parcel reply;
    ASSERT_EQ(OK, mServer->transact(kWho, Parcel(), &reply));
    EXPECT_EQ(getpid(), reply.readInt32());
    EXPECT_EQ(BinderWorld::expectedUid(geteuid()), reply.readUint32());
}

TEST_F(CallTest, growsThePoolToItsMaximum) {
    constexpr int kMaxThreads = 3;
    constexpr int kPool = kMaxThreads + 1;  // with the one that startThreadPool() starts
    RoleProcess& process = startServer("small", kMaxThreads);
    const sp<IBinder> server = defaultServiceManager()->checkService(String16("small"));
    std::vector<std::jthread> callers;
    for (int i = 0; i < 2 * kPool; ++i) {
        callers.emplace_back([&] { EXPECT_EQ(OK, ask(server, kBlock).status); });
    }
    for (int i = 1; i <= kPool; ++i) {
        EXPECT_EQ("blocked " + std::to_string(i), process.receive());
    }
    const std::string prefix = "binder:" + std::to_string(process.pid()) + "_";
    const auto isNamed = [&](const std::string& name) { return name.starts_with(prefix); };
    EXPECT_EQ(kPool, std::ranges::count_if(threadNames(process.pid()), isNamed));
    process.send("release");
    for (int i = kPool; i < 2 * kPool; ++i) {
        // Each takes the place of one that is done.
        EXPECT_GE("blocked " + std::to_string(kPool), process.receive());
    }
}

TEST_F(LimitTest, largeTransactionsFailAlone) {
    constexpr int32_t kLarge = 700 * 1024;
    constexpr int32_t kTooLarge = 1024 * 1024;
    const std::tuple<size_t, int32_t, status_t> rows[] = {{kLarge, 1, OK},
                                                          {1, kLarge, OK},
                                                          {kTooLarge, 1, FAILED_TRANSACTION},
                                                          {1, kTooLarge, FAILED_TRANSACTION},
                                                          {64 * 1024, 64 * 1024, OK}};
    for (const auto& [in, out, status] : rows) {
        Parcel data;
        Parcel reply;
        data.writeInt32(out);
        data.writeByteVector(std::vector<int8_t>(in, 3));
        ASSERT_EQ(status, mServer->transact(kBytes, data, &reply)) << in << " " << out;
        std::vector<int8_t> bytes;
        reply.readByteVector(&bytes);
        const size_t expected = status == OK ? static_cast<size_t>(out) : 0;
        EXPECT_TRUE(bytes == std::vector<int8_t>(expected, 7)) << in << " " << out;
        EXPECT_EQ(3, ask(mServer, kAdd, {1, 2}).value);
    }
}

TEST_F(LimitTest, floodOfOneWayCallsIsRefusedInTime) {
    constexpr int kFlood = 4000;
    const sp<IBinder> other = swapBinder(mServer, kNewObject);
    const auto record = [&](int32_t word) {
        Parcel data;
        data.writeInt32(word);
        data.writeByteVector(std::vector<int8_t>(1024, 3));
        return mServer->transact(kRecord, data, nullptr, IBinder::FLAG_ONEWAY);
    };
    ASSERT_EQ(OK, ask(mServer, kBlock, {}, IBinder::FLAG_ONEWAY).status);
    EXPECT_EQ("blocked 1", mServerProcess.receive());
    std::vector<int32_t> taken;
    for (int32_t i = 0; i < kFlood; ++i) {
        const status_t status = record(i);
        ASSERT_TRUE(status == OK || status == FAILED_TRANSACTION) << status;
        if (status == OK) {
            taken.push_back(i);
        }
    }
    EXPECT_GT(taken.size(), 100u);
    EXPECT_LT(taken.size(), 1024u);  // what the server's buffer space can hold
    EXPECT_EQ(OK, other->pingBinder());
    EXPECT_EQ(3, ask(mServer, kAdd, {1, 2}).value);
    mServerProcess.send("release");
    Parcel count;
    Parcel reply;
    count.writeUint32(static_cast<uint32_t>(taken.size()));
    EXPECT_EQ(OK, mServer->transact(kRecorded, count, &reply));
    std::vector<int32_t> recorded;
    EXPECT_EQ(OK, reply.readInt32Vector(&recorded));
    EXPECT_EQ(taken, recorded) << "in the order in which they were sent";
    EXPECT_EQ(OK, record(0));
}

}  // namespace
}  // namespace android
