// The daemon's clients as processes: they register, are told, are refused, die.

#include <binder/IServiceManager.h>

#include <algorithm>

#include "KelvodTest.h"

namespace {

using namespace kelvo;

using KelvodClientsTest = KelvodTest;

/** A role: answers each code with the status of such a call, its argument 1, or with "absent". */
int call(RoleLink& link) {
    const auto manager = android::defaultServiceManager();
    for (std::string code = link.receive(); !code.empty(); code = link.receive()) {
        const bool isThere = manager->checkService(android::String16("kelvo")) != nullptr;
        link.send(isThere ? std::to_string(callKelvod(static_cast<uint32_t>(std::stoul(code)), {1}))
                          : "absent");
    }
    return 0;
}
const Role kCall("call", call);

}  // namespace

TEST_F(KelvodClientsTest, mayChangeStateAsRootOrSystemOnly) {
    if (geteuid() != 0) {
        GTEST_SKIP() << "only root can start processes of other users";
    }
    startKelvod();
    constexpr uid_t kIsolated = 99000;  // of processes that the service manager gives no service
    for (const uid_t uid : {0u, 1000u, 1001u, 2000u, 9999u, 10050u, 110050u}) {
        const bool privileged = uid == 0 || uid == 1000;
        RoleProcess& caller = mWorld.start("call", "", uid);
        for (const char* code : {"5", "6", "12", "15", "18", "24", "101", "104", "106"}) {
            EXPECT_EQ(caller.ask(code), privileged ? "0" : "-1") << uid << " calls " << code;
        }
        for (const char* code : {"1", "2", "4", "9", "17", "20", "21", "22", "23", "25"}) {
            EXPECT_EQ(caller.ask(code), "0") << uid << " calls " << code;
        }
        EXPECT_EQ(caller.ask("26"), "-74") << uid;
    }
    EXPECT_EQ(mWorld.start("call", "", kIsolated).ask("4"), "absent");
    RoleProcess& app = startListeners(1, 10050);
    app.kill();
    EXPECT_TRUE(logs("BinderClient: binder(uid:10050) died!"));
}

TEST_F(KelvodClientsTest, areToldEverythingInOrderWhileOthersAreKilled) {
    constexpr size_t kProcesses = 20;
    constexpr size_t kVictims = 4;
    constexpr size_t kListeners = 50;  // in each process
    constexpr int32_t kFirst = 100;
    constexpr int32_t kNotifications = 15;
    startKelvod();
    std::vector<RoleProcess*> processes;
    for (size_t i = 0; i < kProcesses; ++i) {
        processes.push_back(&startListeners(kListeners));
    }
    EXPECT_EQ(processes[0]->ask("stick"), "sticks");
    std::string expected;
    for (int32_t status = kFirst; status < kFirst + kNotifications; ++status) {
        ASSERT_EQ(callKelvod(NOTIFY_THERMAL_STATUS, {status}), android::OK);
        expected += ",status " + std::to_string(status);
    }
    ASSERT_EQ(processes[0]->receive(), "stuck") << "with some told and others not";
    for (size_t i = kVictims; i > 0; --i) {
        processes[i - 1]->kill();
    }
    EXPECT_TRUE(logs(" died!", kVictims * kListeners));
    EXPECT_EQ(callKelvod(NOTIFY_THERMAL_STATUS, {999}), android::OK);
    for (size_t i = kVictims; i < kProcesses; ++i) {
        RoleProcess& survivor = *processes[i];
        EXPECT_EQ(survivor.ask("until status 999"), "seen");
        const std::string heard = survivor.ask("heard");
        EXPECT_TRUE(heard.ends_with(expected + ",status 999")) << heard;
        EXPECT_EQ(std::count(heard.begin(), heard.end(), ','), kNotifications + 2) << heard;
    }
    EXPECT_EQ(countInLog("Entering notifyCallback, binder clients size 800\n"), 1u);
    EXPECT_EQ(countInLog("Notify thermal status: 999"), (kProcesses - kVictims) * kListeners);
}

TEST_F(KelvodClientsTest, loseADaemonThatEndsWithTheDriver) {
    if (BinderWorld::onKernel()) {
        GTEST_SKIP() << "the kernel's driver does not end";
    }
    startKelvod();
    for (int i = 0; i < 200; ++i) {  // its threads are busy when it ends
        callKelvod(NOTIFY_THERMAL_STATUS, {i});
    }
    mWorld.endHub();
    EXPECT_EQ("status 255", awaitEnding());
}
