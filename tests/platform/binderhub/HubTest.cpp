// The hub without its listening socket, driven by clients with hand-made commands.

#include <gtest/gtest.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstring>
#include <filesystem>
#include <functional>

#include "Descriptors.h"
#include "HubClient.h"
#include "HubInvariants.h"
#include "HubState.h"
#include "Server.h"
#include "TestClient.h"

namespace binderhub {

namespace {

constexpr uint64_t kCookie = 77;

constexpr binder_handle_cookie kDeath = {1, kCookie};

/** A service manager and a client that has given it a binder, of which it holds handle 1. */
class HubTest : public testing::Test {
  protected:
    void SetUp() override {
        ASSERT_EQ(0, manager.becomeManager());
        loop.emplace(manager.newLooper());
        user.emplace(client.newThread());
    }

    void TearDown() override {
        EXPECT_EQ("", checkInvariants(hub));
        manager.socket.reset();
        client.socket.reset();
        for (int i = 0; i < 3; ++i) {
            hub.step(0);
        }
        EXPECT_EQ("", checkInvariants(hub));
        EXPECT_NE(std::string::npos,
                  stateOf(hub).find("\"totals\":{\"processes\":0,\"threads\":0,\"nodes\":0,"
                                    "\"handles\":0,\"death_notices\":0,\"transactions\":0,"
                                    "\"buffers\":0,\"bytes\":0}"))
                << stateOf(hub);
    }

    /** What the manager's looper is told when the client calls it so. */
    std::string call(const Objects& objects, uint32_t flags = 0) {
        user->send(Batch().transfer(BC_TRANSACTION, 0, objects, flags));
        return loop->read();
    }

    /** The manager gets and keeps handle 1 of the client's binder 10 with cookie 11. */
    void giveBinder() {
        ASSERT_EQ("TRANSACTION", call({object(BINDER_TYPE_BINDER, 10, 11)}));
        const binder_ptr_cookie name = {10, 11};
        loop->exchange(
                Batch().add(BC_ACQUIRE, 1U).add(BC_FREE_BUFFER, loop->bufferId).transfer(BC_REPLY));
        ASSERT_EQ("INCREFS ACQUIRE COMPLETE REPLY", user->read());
        // What remains of the reply comes with the next call: it is taken here.
        loop->send(Batch().transfer(BC_TRANSACTION, 0xbad));
        ASSERT_EQ("COMPLETE FAILED_REPLY", loop->read());
        loop->send({});
        user->exchange(Batch().add(BC_INCREFS_DONE, name)
                               .add(BC_ACQUIRE_DONE, name)
                               .add(BC_FREE_BUFFER, user->bufferId)
                               .add(BC_ENTER_LOOPER));
    }

    Hub hub;
    TestProcess manager{hub, 100, 1};
    TestProcess client{hub, 200};
    std::optional<TestThread> loop;
    std::optional<TestThread> user;
};

void expectObject(uint32_t type, uint64_t name, uint64_t cookie, const TestThread& receiver) {
    ASSERT_EQ(1U, receiver.objects.size());
    const flat_binder_object& object = receiver.objects[0];
    EXPECT_EQ(std::tuple(type, name, cookie),
              std::tuple(object.hdr.type, object.binder, object.cookie));
}

TEST_F(HubTest, translatesObjectsForTheReceiver) {
    giveBinder();
    TestProcess third(hub, 300);
    TestThread thread = third.newThread();
    const std::tuple<TestThread&, flat_binder_object, uint32_t, uint64_t, uint64_t> kCases[] = {
            {*user, object(BINDER_TYPE_BINDER, 10, 11), BINDER_TYPE_HANDLE, 1, 0},
            {*user, object(BINDER_TYPE_BINDER, 20, 21), BINDER_TYPE_HANDLE, 2, 0},
            {*user, object(BINDER_TYPE_WEAK_BINDER, 10, 11), BINDER_TYPE_WEAK_HANDLE, 1, 0},
            {thread, object(BINDER_TYPE_BINDER, 10, 12), BINDER_TYPE_HANDLE, 2, 0},
    };
    for (const auto& [sender, sent, type, name, cookie] : kCases) {
        sender.exchange(Batch().transfer(BC_TRANSACTION, 0, {sent}));
        const std::string names = loop->read();
        EXPECT_EQ("TRANSACTION", names.substr(names.rfind(' ') + 1));
        expectObject(type, name, cookie, *loop);
        // The reply brings it home, whoever's it is.
        const Batch reply =
                Batch().transfer(BC_REPLY, 0, loop->objects).add(BC_FREE_BUFFER, loop->bufferId);
        EXPECT_EQ("COMPLETE", loop->exchange(reply)) << "at once, for the object's sake";
        loop->send({});
        sender.read();
        expectObject(sent.hdr.type, sent.binder, sent.cookie, sender);
        sender.free();
    }
}

TEST_F(HubTest, tellsWhoCalls) {
    TestProcess own(hub, 300, geteuid());
    TestThread thread = own.newThread();
    thread.send(Batch().transfer(BC_TRANSACTION));
    ASSERT_EQ("TRANSACTION", loop->read());
    EXPECT_EQ(300, loop->data.sender_pid);
    EXPECT_EQ(1000U, loop->data.sender_euid);
    loop->send(Batch().transfer(BC_REPLY));
    call({}, TF_ONE_WAY);
    EXPECT_EQ(0, loop->data.sender_pid);
    EXPECT_EQ(10000U, loop->data.sender_euid);
}

TEST_F(HubTest, tellsTheOwnerWhenTheLastReferenceGoes) {
    giveBinder();
    EXPECT_EQ("", loop->exchange(Batch().add(BC_INCREFS, 1U).add(BC_RELEASE, 1U)));
    EXPECT_EQ("RELEASE", user->read());
    EXPECT_EQ("", user->exchange({}));
    loop->exchange(Batch().add(BC_DECREFS, 1U));
    EXPECT_EQ("DECREFS", user->read());
}

TEST_F(HubTest, deliversNestedCallsToTheThreadThatWaits) {
    giveBinder();
    TestThread idle = client.newLooper();
    ASSERT_EQ("TRANSACTION", call({}));
    TestThread second = manager.newLooper();
    EXPECT_EQ("", loop->exchange(Batch().transfer(BC_TRANSACTION, 1)));
    EXPECT_EQ("", idle.read());
    EXPECT_EQ("COMPLETE TRANSACTION", user->read());
    EXPECT_EQ(10U, user->data.target.ptr);
    EXPECT_EQ(11U, user->data.cookie);
    EXPECT_EQ("", user->exchange(Batch().transfer(BC_TRANSACTION)));
    EXPECT_EQ("", second.read());
    EXPECT_EQ("COMPLETE TRANSACTION", loop->read());
    EXPECT_EQ("", loop->exchange(Batch().transfer(BC_REPLY)));
    EXPECT_EQ("COMPLETE REPLY", user->read());
    EXPECT_EQ("", user->exchange(Batch().transfer(BC_REPLY)));
    EXPECT_EQ("COMPLETE REPLY", loop->read());
    EXPECT_EQ("", loop->exchange(Batch().transfer(BC_REPLY)));
    EXPECT_EQ("COMPLETE REPLY", user->read());
}

TEST_F(HubTest, handsOutOneWayCallsOneAtATime) {
    TestThread second = manager.newLooper();
    for (uint32_t code = 0; code < 3; ++code) {
        EXPECT_EQ("COMPLETE", user->exchange(Batch().transfer(BC_TRANSACTION, 0, {}, TF_ONE_WAY)));
    }
    EXPECT_EQ("TRANSACTION", second.read());
    EXPECT_EQ("", loop->read());
    second.send(Batch().add(BC_FREE_BUFFER, second.bufferId), false);
    EXPECT_EQ("TRANSACTION", loop->read());
    EXPECT_EQ("TRANSACTION", loop->free());
}

TEST_F(HubTest, boundsOneWayCallsAndLeavesRoomForOthers) {
    Batch big = Batch().transfer(BC_TRANSACTION, 0,
                                 Objects(500, object(BINDER_TYPE_WEAK_BINDER, 1)), TF_ONE_WAY);
    std::string result;
    size_t sent = 0;
    while ((result = user->exchange(big)).find("FAILED") == std::string::npos) {
        ASSERT_LT(++sent, kAsyncSpace / big.payload.size() + 1);
    }
    EXPECT_EQ(kAsyncSpace / (big.payload.size() + kBufferOverhead), sent);
    EXPECT_EQ("", user->exchange(Batch().transfer(BC_TRANSACTION)));
}

TEST_F(HubTest, refusesWhatIsWrongAndKeepsTheSender) {
    giveBinder();
    const flat_binder_object binder = object(BINDER_TYPE_BINDER, 10, 11);
    const auto altered = [&](auto alter) {
        Batch batch = Batch().transfer(BC_TRANSACTION, 0, {binder, binder});
        binder_transaction_data data;
        memcpy(&data, batch.commands.data() + 4, sizeof(data));
        uint64_t offsets[2] = {0, 24};
        alter(data, offsets);
        memcpy(batch.payload.data() + 48, offsets, sizeof(offsets));
        memcpy(batch.commands.data() + 4, &data, sizeof(data));
        return batch;
    };
    const auto with = [](const flat_binder_object& bad) {
        return Batch().transfer(BC_TRANSACTION, 0, {bad});
    };
    const std::pair<const char*, Batch> kCases[] = {
            {"overlap", altered([](auto&, auto* offsets) { offsets[1] = 20; })},
            {"order", altered([](auto&, auto* offsets) { std::swap(offsets[0], offsets[1]); })},
            {"behind the data", altered([](auto&, auto* offsets) { offsets[1] = 28; })},
            {"far away", altered([](auto&, auto* offsets) { offsets[1] = ~uint64_t{3}; })},
            {"odd", altered([](auto&, auto* offsets) { offsets[1] = 25; })},
            {"half an offset", altered([](auto& data, auto*) { data.offsets_size = 12; })},
            {"outside", altered([](auto& data, auto*) { data.data_size = 4096; })},
            {"wrapped", altered([](auto& data, auto*) { data.data.ptr.buffer = ~uint64_t{7}; })},
            {"too big", altered([](auto& data, auto*) { data.data_size = ~uint64_t{0}; })},
            {"other cookie", with(object(BINDER_TYPE_BINDER, 10, 99))},
            {"unknown type", with(object(BINDER_TYPE_PTR, 0))},
            {"no such handle", with(object(BINDER_TYPE_HANDLE, 5))},
            {"no descriptor accepted", with(object(BINDER_TYPE_FD, 0))},
            {"no such target", Batch().transfer(BC_TRANSACTION, 5)},
            {"reply to nobody", Batch().transfer(BC_REPLY)},
    };
    for (const auto& [name, batch] : kCases) {
        const std::string result = user->exchange(batch);
        EXPECT_EQ("FAILED_REPLY", result.substr(result.rfind(' ') + 1)) << name;
        EXPECT_EQ("", loop->read()) << name;
        EXPECT_EQ("", checkInvariants(hub)) << name;
    }
}

TEST_F(HubTest, passesDescriptorsToThoseWhoAcceptThem) {
    const uint32_t flags = FLAT_BINDER_FLAG_ACCEPTS_FDS;
    ASSERT_EQ("TRANSACTION", call({object(BINDER_TYPE_BINDER, 1, 1, flags)}, TF_ACCEPT_FDS));
    Batch reply = Batch().transfer(BC_REPLY, 0, Objects(2, object(BINDER_TYPE_FD, 0, 5)));
    reply.descriptors = {STDERR_FILENO};
    loop->exchange(reply);
    EXPECT_EQ("INCREFS ACQUIRE COMPLETE REPLY", user->read());
    ASSERT_EQ(2U, user->descriptors.size());
    EXPECT_EQ(1U, user->objects[1].handle);
    EXPECT_EQ(5U, user->objects[1].cookie);
}

TEST_F(HubTest, tellsOfDeaths) {
    giveBinder();
    EXPECT_EQ("", loop->exchange(Batch().add(BC_REQUEST_DEATH_NOTIFICATION, kDeath)));
    client.socket.reset();
    hub.step(0);
    EXPECT_EQ("DEAD", loop->read());
    EXPECT_EQ("DEAD_REPLY", loop->exchange(Batch().transfer(BC_TRANSACTION, 1)));
    // Cleared between notice and acknowledgement: confirmed after that.
    EXPECT_EQ("", loop->exchange(Batch().add(BC_CLEAR_DEATH_NOTIFICATION, kDeath)));
    EXPECT_EQ("CLEARED", loop->exchange(Batch().add(BC_DEAD_BINDER_DONE, kCookie)));
    EXPECT_EQ("DEAD", loop->exchange(Batch().add(BC_REQUEST_DEATH_NOTIFICATION, kDeath)));
}

TEST_F(HubTest, failsCallsOfThreadsAndProcessesThatEnd) {
    giveBinder();
    TestThread other = client.newThread();
    other.send(Batch().transfer(BC_TRANSACTION));
    ASSERT_EQ("TRANSACTION", loop->read());
    ASSERT_EQ("", loop->exchange(Batch().transfer(BC_TRANSACTION, 1)));
    ASSERT_EQ("COMPLETE TRANSACTION", other.read());  // the thread that waits
    other.socket.reset();
    hub.step(0);
    EXPECT_EQ("COMPLETE DEAD_REPLY", loop->read());
    EXPECT_EQ("COMPLETE", loop->exchange(Batch().transfer(BC_REPLY)));  // its caller has gone
    user->send(Batch().transfer(BC_TRANSACTION), false);
    manager.socket.reset();
    hub.step(0);
    EXPECT_EQ("COMPLETE DEAD_REPLY", user->read());
    EXPECT_EQ("DEAD_REPLY", user->exchange(Batch().transfer(BC_TRANSACTION)));
}

TEST_F(HubTest, tellsAndGrantsStrangersNothingOfTheWhole) {
    EXPECT_EQ(-EPERM, client.ask(kState, 0));
    EXPECT_EQ(-EPERM, client.ask(kNodeInfo, 0));
    EXPECT_EQ(-EBUSY, client.becomeManager());
    manager.socket.reset();
    hub.step(0);
    EXPECT_EQ(-EPERM, client.becomeManager()) << "that is for the user who was it before";
    TestProcess next(hub, 300, 1);
    EXPECT_EQ(0, next.becomeManager());
}

TEST_F(HubTest, boundsBindersThatAProcessGives) {
    constexpr uint32_t kAtOnce = 4096;
    uint32_t kept = 0;
    for (bool taken = true; taken && kept <= kMaxNodes;) {
        Objects objects;
        Batch keep;
        for (uint32_t i = 1; i <= kAtOnce; ++i) {
            objects.push_back(object(BINDER_TYPE_WEAK_BINDER, 16 * (kept + i)));
            keep.add(BC_INCREFS, kept + i);
        }
        taken = call(objects, TF_ONE_WAY) == "TRANSACTION";
        if (taken) {
            kept += kAtOnce;
            loop->send(keep.add(BC_FREE_BUFFER, loop->bufferId));
        }
        EXPECT_NE("closed", user->read());
    }
    EXPECT_EQ(kMaxNodes, kept);
}

TEST_F(HubTest, boundsWhatAUserMayHold) {
    raiseDescriptorLimit();
    std::vector<std::unique_ptr<TestProcess>> processes;
    std::vector<android::base::unique_fd> threads;
    const auto connect = [&](uid_t uid) {
        processes.push_back(std::make_unique<TestProcess>(hub, 300, uid));
        return processes.back()->ask(kSetMaxThreads, 1);
    };
    const auto addThread = [&](TestProcess& process) {
        const int status = process.ask(kNewThread, 0);
        if (status == 0) {
            threads.push_back(std::move(process.answer.descriptors[0]));
        }
        return status;
    };
    for (size_t i = 1; i < kMaxProcessesOfUid; ++i) {  // the client is the first
        ASSERT_EQ(0, connect(10000));
    }
    EXPECT_EQ(-EPIPE, connect(10000)) << "closed";
    while (addThread(*processes.front()) == 0) {
    }
    EXPECT_EQ(kMaxConnectionsOfUid, threads.size() + kMaxProcessesOfUid + 1) << "and its thread";
    EXPECT_EQ(-EAGAIN, addThread(client));
    for (const uid_t uid : {uid_t{10001}, uid_t{0}, geteuid()}) {
        EXPECT_EQ(0, connect(uid)) << uid;
        EXPECT_EQ(0, addThread(*processes.back())) << uid;
    }
    processes.erase(processes.begin());
    hub.step(0);
    EXPECT_EQ(0, connect(10000)) << "once one has gone";
}

TEST_F(HubTest, closesWhoSendsGarbageAndNobodyElse) {
    giveBinder();
    const auto head = [](Kind kind, uint32_t flags, uint32_t commandSize) {
        const HubHeader header = {kind, flags, commandSize, 0, 0, 0, 0};
        const auto* bytes = reinterpret_cast<const uint8_t*>(&header);
        return std::vector<uint8_t>(bytes, bytes + sizeof(header));
    };
    const std::vector<uint8_t> question = head(kExchange, kWantsReturns, 0);
    const std::function<void(TestThread&)> kCases[] = {
            [](TestThread& thread) { thread.send(Batch().add(0xdeadbeef)); },
            [](TestThread& thread) { thread.send(Batch().add(BC_ACQUIRE)); },
            [](TestThread& thread) { thread.sendRaw(std::vector<uint8_t>(3, 1)); },
            [&](TestThread& thread) { thread.sendRaw(head(kExchange, 0, 100)); },
            [&](TestThread& thread) { thread.sendRaw(head(kHello, kWantsReturns, 0)); },
            [&](TestThread& thread) { thread.sendRaw(question), thread.sendRaw(question); },
            [](TestThread& thread) {  // reads none of the results
                for (size_t i = 0; i <= kMaxUnreadResults; ++i) {
                    thread.send(Batch().transfer(BC_TRANSACTION, 0xbad), false);
                }
            },
    };
    for (const auto& misbehave : kCases) {
        TestProcess bad(hub, 300);
        TestThread thread = bad.newThread();
        misbehave(thread);
        EXPECT_EQ("closed", thread.read());
        EXPECT_EQ(-EPIPE, bad.ask(kSetMaxThreads, 1));
        EXPECT_EQ("", checkInvariants(hub));
    }
    EXPECT_EQ("TRANSACTION", call({}));
}

TEST_F(HubTest, countsMistakesAndIgnoresThem) {
    giveBinder();
    EXPECT_EQ("", loop->exchange(Batch().add(BC_FREE_BUFFER, loop->bufferId)
                                         .add(BC_RELEASE, 7U)
                                         .add(BC_ACQUIRE, 0U)
                                         .add(BC_DEAD_BINDER_DONE, kCookie)
                                         .add(BC_ACQUIRE_DONE, uint64_t{0}, uint64_t{0})));
    EXPECT_NE(std::string::npos, stateOf(hub).find("\"mistakes\":5")) << stateOf(hub);
}

TEST(ServerTest, refusesASecondHubAndReplacesAStaleSocket) {
    // Too long for the name of a socket.
    const std::string path = getenv("KELVO_ROOT") + ("/" + std::string(120, 'd')) + "/hub";
    for (const int ending : {SIGKILL, SIGTERM}) {  // the second finds what the first left
        const pid_t child = fork();
        if (child == 0) {
            prctl(PR_SET_PDEATHSIG, SIGKILL);
            _exit(serve(path).empty() ? 0 : 1);
        }
        while (connectTo(path).get() < 0 && waitpid(child, nullptr, WNOHANG) == 0) {
            usleep(1000);
        }
        std::string json;
        std::string error;
        EXPECT_EQ(0, hubState(path, &json, &error)) << error;
        EXPECT_EQ("a hub answers there already", serve(path));
        kill(child, ending);
        int status = -1;
        ASSERT_EQ(child, waitpid(child, &status, 0));
        EXPECT_EQ(ending == SIGKILL ? SIGKILL : 0, status);
        EXPECT_EQ(ending == SIGKILL, std::filesystem::exists(path));
    }
}

}  // namespace

}  // namespace binderhub
