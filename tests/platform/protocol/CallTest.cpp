#include "ProtocolTest.h"

#include <binder/IServiceManager.h>
#include <unistd.h>

#include <algorithm>
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

TEST_F(CallTest, tellsWhoCalls) {
    Parcel reply;
    ASSERT_EQ(OK, mServer->transact(kWho, Parcel(), &reply));
    const auto own = static_cast<int32_t>(geteuid());
    const auto caller = static_cast<int32_t>(BinderWorld::expectedUid(geteuid()));
    const pid_t server = mServerProcess.pid();
    for (const int32_t expected : {getpid(), caller, server, own, getpid(), caller}) {
        EXPECT_EQ(expected, reply.readInt32());
    }
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

}  // namespace
}  // namespace android
