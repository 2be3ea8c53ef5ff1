#include "ProtocolTest.h"

#include <binder/IServiceManager.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <numeric>
#include <sstream>
#include <thread>

#include "support/Files.h"

namespace android {
namespace {

using CallTest = ProtocolTest;

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

TEST_F(CallTest, keepsTheOrderOfOneWayCalls) {
    std::vector<int32_t> sent(300);
    std::iota(sent.begin(), sent.end(), 1);
    for (const int32_t word : sent) {
        ASSERT_EQ(OK, ask(mServer, kRecord, {word}, IBinder::FLAG_ONEWAY).status);
    }
    Parcel data;
    Parcel reply;
    data.writeInt32(static_cast<int32_t>(sent.size()));
    ASSERT_EQ(OK, mServer->transact(kRecorded, data, &reply));
    std::vector<int32_t> received;
    EXPECT_EQ(OK, reply.readInt32Vector(&received));
    EXPECT_EQ(sent, received);
}

TEST_F(CallTest, nestsOnTheThreadsThatWait) {
    constexpr int32_t kDepth = 9;
    const sp<BBinder> local = makeTestService(nullptr);
    Parcel data;
    data.writeStrongBinder(local);
    data.writeInt32(kDepth);
    EXPECT_EQ(OK, mServer->transact(kNest, data, nullptr));
    EXPECT_NE(0, ask(mServer, kNestThread).value);
    EXPECT_EQ(gettid(), ask(local, kNestThread).value);
}

TEST_F(CallTest, tellsWhoCalls) {
    const auto check = [&](uid_t uid, std::optional<uid_t> become) {
        const int32_t own = static_cast<int32_t>(geteuid());
        const int32_t caller = static_cast<int32_t>(BinderWorld::expectedUid(uid));
        std::istringstream answer(mWorld.start("who", "", become).receive());
        int32_t pid = 0;
        answer >> pid;
        const std::array<int32_t, 6> expected{pid, caller, mServerProcess.pid(), own, pid, caller};
        for (const int32_t word : expected) {
            int32_t got = -1;
            EXPECT_TRUE(answer >> got);
            EXPECT_EQ(word, got) << "caller " << uid;
        }
    };
    check(geteuid(), std::nullopt);
    if (geteuid() != 0) {
        GTEST_SKIP() << "the other half needs root: another user calls";
    }
    check(10123, 10123);
}

TEST_F(CallTest, growsThePoolToItsMaximum) {
    constexpr int kMaxThreads = 3;
    constexpr int kPool = kMaxThreads + 1;  // with the one that startThreadPool() starts
    RoleProcess& process = startServer("small", kMaxThreads);
    const sp<IBinder> server = defaultServiceManager()->checkService(String16("small"));
    std::vector<std::thread> callers;
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
        const std::string text = process.receive();  // each takes the place of one that is done
        EXPECT_GE("blocked " + std::to_string(kPool), text);
    }
    for (std::thread& caller : callers) {
        caller.join();
    }
}

TEST_F(CallTest, answersWhatEveryBinderDoes) {
    EXPECT_EQ(OK, mServer->pingBinder());
    EXPECT_TRUE(mServer->isBinderAlive());
    EXPECT_EQ(String16("kelvo.test.ITestService"), mServer->getInterfaceDescriptor());
    std::array<int, 2> ends{};
    ASSERT_EQ(0, pipe(ends.data()));
    Vector<String16> args;
    args.add(String16("one"));
    args.add(String16("two"));
    EXPECT_EQ(OK, mServer->dump(ends[1], args));
    close(ends[1]);
    std::array<char, 64> text{};
    EXPECT_EQ(13, read(ends[0], text.data(), text.size()));
    EXPECT_STREQ("args: one two", text.data());
    close(ends[0]);
}

}  // namespace
}  // namespace android
