#include "ProtocolTest.h"

namespace android {
namespace {

using LimitTest = ProtocolTest;

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
