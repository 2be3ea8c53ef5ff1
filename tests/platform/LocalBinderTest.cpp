#include <limits>
#include <memory>

#include <binder/IPCThreadState.h>
#include <binder/IServiceManager.h>
#include <binder/LocalCall.h>
#include <binder/Parcel.h>
#include <binder/ProcessState.h>
#include <binder/Stability.h>
#include <gtest/gtest.h>
#include <sys/prctl.h>
#include <unistd.h>

#include <string>
#include <thread>
#include <vector>

namespace android {
namespace {

class IAdder : public IInterface {
  public:
    DECLARE_META_INTERFACE(Adder)
    enum { ADD = IBinder::FIRST_CALL_TRANSACTION };
    virtual int32_t add(int32_t a, int32_t b) = 0;
};

class BpAdder : public BpInterface<IAdder> {
  public:
    explicit BpAdder(const sp<IBinder>& remote) : BpInterface<IAdder>(remote) {}
    int32_t add(int32_t a, int32_t b) override {
        Parcel data;
        Parcel reply;
        data.writeInterfaceToken(IAdder::getInterfaceDescriptor());
        data.writeInt32Vector(std::vector{a, b});
        return remote()->transact(ADD, data, &reply) == OK ? reply.readInt32() : -1;
    }
};

DO_NOT_DIRECTLY_USE_ME_IMPLEMENT_META_INTERFACE(Adder, "test.IAdder")

class Adder : public BnInterface<IAdder> {
  public:
    int32_t add(int32_t a, int32_t b) override { return a + b; }

    status_t onTransact(uint32_t code, const Parcel& data, Parcel* reply, uint32_t flags) override {
        mCallingUid = IPCThreadState::self()->getCallingUid();
        mCallingPid = IPCThreadState::self()->getCallingPid();
        if (code != ADD) {
            return BBinder::onTransact(code, data, reply, flags);
        }
        CHECK_INTERFACE(IAdder, data, reply);
        std::vector<int32_t> numbers;
        const status_t status = data.readInt32Vector(&numbers);
        return status != OK || numbers.size() != 2 ? BAD_VALUE
                                                   : reply->writeInt32(add(numbers[0], numbers[1]));
    }

    status_t dump(int fd, const Vector<String16>& arguments) override {
        for (const String16& argument : arguments) {
            const String8 text(argument);
            EXPECT_EQ(static_cast<ssize_t>(text.bytes()), write(fd, text.string(), text.bytes()));
        }
        return OK;
    }

    uid_t mCallingUid = 0;
    pid_t mCallingPid = 0;
};

/** Has the descriptor of no interface, so that the proxy class speaks to it. */
class Forwarder : public BBinder {
  public:
    explicit Forwarder(const sp<IBinder>& target) : mTarget(target) {}
    status_t onTransact(uint32_t code, const Parcel& data, Parcel* reply, uint32_t flags) override {
        return mTarget->transact(code, data, reply, flags);
    }

  private:
    const sp<IBinder> mTarget;
};

TEST(LocalBinderTest, callsDirectlyOrThroughTheProxyClass) {
    const sp<Adder> adder = new Adder;
    EXPECT_EQ(adder, IAdder::asInterface(adder));
    EXPECT_EQ(adder, IInterface::asBinder(adder)->localBinder());
    wp<IAdder> remembered;
    {
        const sp<IBinder> forwarder = new Forwarder(adder);
        const sp<IAdder> proxy = interface_cast<IAdder>(forwarder);
        EXPECT_NE(adder, proxy);
        EXPECT_EQ(forwarder, IInterface::asBinder(proxy));
        EXPECT_EQ(5, proxy->add(2, 3));
        remembered = proxy;
        EXPECT_EQ(2, adder->getStrongCount());
    }
    EXPECT_EQ(1, adder->getStrongCount()) << "a weakly held proxy holds no binder";
    EXPECT_EQ(nullptr, IAdder::asInterface(nullptr));
    EXPECT_EQ(nullptr, IInterface::asBinder(static_cast<IInterface*>(nullptr)));
}

TEST(LocalBinderTest, refusesForeignTokensAndBrokenRequests) {
    const sp<IBinder> adder = new Adder;
    Parcel foreign;
    Parcel reply;
    foreign.writeInterfaceToken(String16("test.IOther"));
    EXPECT_EQ(PERMISSION_DENIED, adder->transact(IAdder::ADD, foreign, &reply));
    Parcel cut;
    cut.writeInterfaceToken(IAdder::descriptor);
    EXPECT_EQ(BAD_VALUE, adder->transact(IAdder::ADD, cut, &reply));
    EXPECT_EQ(UNKNOWN_TRANSACTION, adder->transact(IAdder::ADD + 1, cut, &reply));
    EXPECT_EQ(0u, reply.dataSize());
}

TEST(LocalBinderTest, servesStandardTransactions) {
    const sp<Adder> adder = new Adder;
    Parcel data;
    Parcel reply;
    EXPECT_EQ(OK, adder->transact(IBinder::PING_TRANSACTION, data, nullptr));
    EXPECT_EQ(OK, adder->transact(IBinder::INTERFACE_TRANSACTION, data, &reply));
    EXPECT_EQ(IAdder::descriptor, reply.readString16());
    for (const uint32_t code : {IBinder::INTERFACE_TRANSACTION, IBinder::EXTENSION_TRANSACTION,
                                IBinder::DEBUG_PID_TRANSACTION}) {
        EXPECT_EQ(BAD_VALUE, adder->transact(code, data, nullptr));
    }
    pid_t pid = 0;
    EXPECT_EQ(OK, static_cast<IBinder&>(*adder).getDebugPid(&pid));
    EXPECT_EQ(getpid(), pid);
    sp<IBinder> extension = adder;
    EXPECT_EQ(OK, static_cast<IBinder&>(*adder).getExtension(&extension));
    EXPECT_EQ(nullptr, extension);
    adder->setExtension(new BBinder);
    EXPECT_EQ(OK, static_cast<IBinder&>(*adder).getExtension(&extension));
    EXPECT_EQ(adder->BBinder::getExtension(), extension);
    EXPECT_EQ(INVALID_OPERATION, adder->linkToDeath(nullptr));
    EXPECT_TRUE(adder->isBinderAlive());
}

TEST(LocalBinderTest, dumpsToTheCallersDescriptor) {
    const sp<IBinder> adder = new Adder;
    int ends[2];
    ASSERT_EQ(0, pipe(ends));
    Parcel data;
    data.writeFileDescriptor(ends[1]);
    data.writeInt32(1000);  // more than there are
    data.writeString16(String16("-a"));
    data.writeString16(String16("b"));
    EXPECT_EQ(OK, adder->transact(IBinder::DUMP_TRANSACTION, data, nullptr));
    char text[8] = {};
    EXPECT_EQ(3, read(ends[0], text, sizeof(text)));
    EXPECT_STREQ("-ab", text);
    Parcel empty;
    EXPECT_EQ(BAD_TYPE, adder->transact(IBinder::DUMP_TRANSACTION, empty, nullptr));
}

TEST(LocalBinderTest, keepsAttachedObjectsForItsLifetime) {
    static const char kIds[2] = {};
    static std::vector<std::pair<const void*, void*>> cleaned;
    int object = 0;
    {
        const sp<IBinder> binder = new BBinder;
        EXPECT_EQ(nullptr, binder->findObject(&kIds[0]));
        const auto clean = [](const void* id, void* attached, void*) {
            cleaned.emplace_back(id, attached);
        };
        binder->attachObject(&kIds[0], &object, nullptr, clean);
        binder->attachObject(&kIds[1], &object, nullptr, clean);
        EXPECT_EQ(&object, binder->findObject(&kIds[0]));
        binder->detachObject(&kIds[1]);
        EXPECT_EQ(nullptr, binder->findObject(&kIds[1]));
        EXPECT_TRUE(cleaned.empty());
    }
    EXPECT_EQ((decltype(cleaned){{&kIds[0], &object}}), cleaned);
}

TEST(LocalBinderTest, bindersKeepTheStabilityTheyWereMarkedWith) {
    const sp<IBinder> stable = new BBinder;
    internal::Stability::markVintf(stable.get());
    Parcel parcel;
    parcel.writeStrongBinder(stable);
    parcel.setDataPosition(24);
    EXPECT_EQ(0b111111, parcel.readInt32());
    parcel.setDataPosition(0);
    EXPECT_EQ(stable, parcel.readStrongBinder());
    EXPECT_TRUE(internal::Stability::requiresVintfDeclaration(stable));
    EXPECT_FALSE(internal::Stability::requiresVintfDeclaration(new BBinder));
    EXPECT_DEATH(internal::Stability::markCompilationUnit(stable.get()), "");
}

TEST(LocalCallTest, comesFromAnotherCallerForItsScope) {
    const sp<Adder> adder = new Adder;
    IPCThreadState* thread = IPCThreadState::self();
    const auto ping = [&](uid_t uid, pid_t pid) {
        Parcel data;
        adder->transact(Adder::LAST_CALL_TRANSACTION, data, nullptr);
        EXPECT_EQ(uid, adder->mCallingUid);
        EXPECT_EQ(pid, adder->mCallingPid);
    };
    ping(getuid(), getpid());
    const int64_t workSource = thread->setCallingWorkSourceUid(5);
    {
        LocalCall app(10050, 4711);
        ping(10050, 4711);
        EXPECT_EQ(static_cast<uid_t>(-1), thread->getCallingWorkSourceUid());
        EXPECT_FALSE(thread->shouldPropagateWorkSource());
        {
            LocalCall nobody(static_cast<uid_t>(-1), -1);
            ping(static_cast<uid_t>(-1), -1);
        }
        ping(10050, 4711);
        const int64_t token = thread->clearCallingIdentity();
        ping(getuid(), getpid());
        thread->restoreCallingIdentity(token);
        ping(10050, 4711);
        std::thread([&] { ping(getuid(), getpid()); }).join();
    }
    ping(getuid(), getpid());
    EXPECT_EQ(5u, thread->getCallingWorkSourceUid());
    EXPECT_TRUE(thread->shouldPropagateWorkSource());
    thread->restoreCallingWorkSource(workSource);
}

TEST(ProcessStateTest, namesTheThreadsOfThePool) {
    const sp<ProcessState> process = ProcessState::self();
    EXPECT_EQ(process, IPCThreadState::self()->process());
    EXPECT_EQ(OK, process->setThreadPoolMaxThreadCount(8));
    std::thread([&] {
        process->giveThreadPoolName();
        char name[16];
        prctl(PR_GET_NAME, name);
        EXPECT_EQ(("binder:" + std::to_string(getpid()) + "_1").substr(0, 15), name);
    }).join();
}

}  // namespace
}  // namespace android
