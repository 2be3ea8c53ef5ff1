#include "ProtocolTest.h"

namespace android {
namespace {

using LimitTest = ProtocolTest;

TEST_F(LimitTest, largeTransactionsFailAlone) {
    struct Row {
        size_t in;
        int32_t out;
        status_t status;
    };
    constexpr int32_t kLarge = 700 * 1024;
    constexpr int32_t kTooLarge = 1024 * 1024;
    for (const auto& [in, out, status] :
         {Row{kLarge, 1, OK}, Row{1, kLarge, OK}, Row{kTooLarge, 1, FAILED_TRANSACTION},
          Row{1, kTooLarge, FAILED_TRANSACTION}, Row{64 * 1024, 64 * 1024, OK}}) {
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
    Parcel data;
    data.writeInt32(1);
    data.writeByteVector(std::vector<int8_t>(1024, 3));
    ASSERT_EQ(OK, ask(mServer, kBlock, {}, IBinder::FLAG_ONEWAY).status);
    EXPECT_EQ("blocked 1", mServerProcess.receive());
    int32_t taken = 0;
    for (int i = 0; i < kFlood; ++i) {
        const status_t status = mServer->transact(kRecord, data, nullptr, IBinder::FLAG_ONEWAY);
        ASSERT_TRUE(status == OK || status == FAILED_TRANSACTION) << status;
        taken += status == OK ? 1 : 0;
    }
    EXPECT_GT(taken, 100);
    EXPECT_LT(taken, 1024);  // what the server's buffer space can hold
    EXPECT_EQ(OK, other->pingBinder());
    EXPECT_EQ(3, ask(mServer, kAdd, {1, 2}).value);
    mServerProcess.send("release");
    EXPECT_EQ(taken, ask(mServer, kRecorded, {taken}).value);
    EXPECT_EQ(OK, mServer->transact(kRecord, data, nullptr, IBinder::FLAG_ONEWAY));
}

}  // namespace
}  // namespace android
