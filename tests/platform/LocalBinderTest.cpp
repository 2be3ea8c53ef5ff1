#include <android-base/unique_fd.h>
#include <binder/BinderService.h>
#include <binder/IPCThreadState.h>
#include <binder/Parcel.h>
#include <binder/Status.h>
#include <binder_linux/LocalCall.h>
#include <binder_linux/LocalServiceManager.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <thread>

namespace android {
namespace {

struct ICounter : IInterface {
    DECLARE_META_INTERFACE(Counter)
    enum { NEXT = IBinder::FIRST_CALL_TRANSACTION };
};

struct BpCounter : BpInterface<ICounter> {
    explicit BpCounter(const sp<IBinder>& remote) : BpInterface<ICounter>(remote) {}
};

DO_NOT_DIRECTLY_USE_ME_IMPLEMENT_META_INTERFACE(Counter, "test.ICounter")

struct Counter : BnInterface<ICounter> {
    status_t onTransact(uint32_t code, const Parcel& data, Parcel* reply, uint32_t flags) override {
        mCallingUid = IPCThreadState::self()->getCallingUid();
        mCallingPid = IPCThreadState::self()->getCallingPid();
        if (code != NEXT) {
            return BBinder::onTransact(code, data, reply, flags);
        }
        CHECK_INTERFACE(ICounter, data, reply);
        return reply->writeInt32(data.readInt32() + 1);
    }

    status_t dump(int fd, const Vector<String16>& arguments) override {
        dprintf(fd, "%zu %s", arguments.size(), String8(arguments.top()).string());
        return OK;
    }

    uid_t mCallingUid = 0;
    pid_t mCallingPid = 0;
};

TEST(LocalBinderTest, callsDirectlyOrThroughTheProxyClass) {
    const sp<Counter> counter = new Counter;
    EXPECT_EQ(counter, ICounter::asInterface(counter));
    EXPECT_EQ(nullptr, ICounter::asInterface(nullptr));
    EXPECT_EQ(nullptr, IInterface::asBinder(static_cast<IInterface*>(nullptr)));
    const sp<IBinder> withoutDescriptor = new BBinder;
    EXPECT_EQ(withoutDescriptor, IInterface::asBinder(ICounter::asInterface(withoutDescriptor)));
    wp<ICounter> remembered;
    {
        const sp<ICounter> proxy = new BpCounter(counter);
        remembered = proxy;
        EXPECT_EQ(counter, IInterface::asBinder(proxy));
        EXPECT_EQ(2, counter->getStrongCount());
    }
    EXPECT_EQ(1, counter->getStrongCount()) << "a weakly held proxy holds no binder";
}

TEST(LocalBinderTest, answersItsOwnTokenAndCodesAndTheStandardOnes) {
    const sp<IBinder> counter = new Counter;
    Parcel own;
    Parcel reply;
    own.writeInterfaceToken(ICounter::descriptor);
    own.writeInt32(2);
    EXPECT_EQ(UNKNOWN_TRANSACTION, counter->transact(ICounter::NEXT + 1, own, &reply));
    Parcel foreign;
    foreign.writeInterfaceToken(String16("test.IOther"));
    EXPECT_EQ(PERMISSION_DENIED, counter->transact(ICounter::NEXT, foreign, &reply));
    EXPECT_EQ(0u, reply.dataSize());
    EXPECT_EQ(OK, counter->transact(ICounter::NEXT, own, &reply));
    EXPECT_EQ(3, reply.readInt32());
    EXPECT_EQ(OK, counter->transact(IBinder::PING_TRANSACTION, Parcel(), nullptr));
    for (const uint32_t code : {IBinder::INTERFACE_TRANSACTION, IBinder::EXTENSION_TRANSACTION,
                                IBinder::DEBUG_PID_TRANSACTION}) {
        EXPECT_EQ(BAD_VALUE, counter->transact(code, Parcel(), nullptr)) << code;
    }
}

TEST(LocalBinderTest, dumpsToTheCallersDescriptor) {
    const sp<IBinder> counter = new Counter;
    base::unique_fd in, out;
    ASSERT_TRUE(base::Pipe(&in, &out));
    Parcel data;
    data.writeFileDescriptor(out.get());
    data.writeInt32(1000);  // more than there are
    data.writeString16(String16("-a"));
    EXPECT_EQ(OK, counter->transact(IBinder::DUMP_TRANSACTION, data, nullptr));
    char text[8] = {};
    EXPECT_EQ(4, read(in.get(), text, sizeof(text)));
    EXPECT_STREQ("1 -a", text);
    const sp<BBinder> silent = new BBinder;
    EXPECT_EQ(OK, silent->transact(IBinder::DUMP_TRANSACTION, Parcel(), nullptr));
}

TEST(LocalCallTest, comesFromAnotherCallerForItsScope) {
    const sp<Counter> counter = new Counter;
    IPCThreadState* thread = IPCThreadState::self();
    const auto expectCaller = [&](uid_t uid, pid_t pid) {
        counter->transact(Counter::LAST_CALL_TRANSACTION, Parcel(), nullptr);
        EXPECT_EQ(uid, counter->mCallingUid);
        EXPECT_EQ(pid, counter->mCallingPid);
    };
    {
        LocalCall app(10050, 4711);
        {
            LocalCall nobody(static_cast<uid_t>(-1), -1);
            expectCaller(static_cast<uid_t>(-1), -1);
        }
        expectCaller(10050, 4711);
        const int64_t token = thread->clearCallingIdentity();
        expectCaller(getuid(), getpid());
        thread->restoreCallingIdentity(token);
        expectCaller(10050, 4711);
        std::thread([&] { expectCaller(getuid(), getpid()); }).join();
    }
    expectCaller(getuid(), getpid());
}

TEST(LocalServiceManagerTest, findsWhatWasAddedLast) {
    const sp<LocalServiceManager> manager = new LocalServiceManager;
    const String16 name("phone.service/default");
    const sp<IBinder> first = new BBinder;
    const sp<IBinder> second = new BBinder;
    EXPECT_EQ(nullptr, manager->getService(name));
    EXPECT_EQ(OK, manager->addService(name, first));
    EXPECT_EQ(first, manager->checkService(name));
    EXPECT_EQ(OK, manager->addService(name, second));
    EXPECT_EQ(second, manager->getService(name));
    EXPECT_EQ(1, first->getStrongCount());
    EXPECT_EQ(binder::Status::EX_ILLEGAL_ARGUMENT, manager->addService(String16("a b"), first));
    EXPECT_EQ(binder::Status::EX_ILLEGAL_ARGUMENT, manager->addService(name, nullptr));
    EXPECT_EQ(1u, manager->listServices(IServiceManager::DUMP_FLAG_PRIORITY_ALL).size());
    EXPECT_TRUE(manager->removeService(name));
    EXPECT_FALSE(manager->removeService(name));
    EXPECT_EQ(nullptr, manager->checkService(name));
}

struct Published : BBinder {
    static const char* getServiceName() { return "published"; }
};

TEST(LocalServiceManagerTest, isOneForTheProcess) {
    const sp<LocalServiceManager> manager = installLocalServiceManager();
    EXPECT_EQ(manager, installLocalServiceManager(new LocalServiceManager));
    ASSERT_EQ(OK, BinderService<Published>::publish(false, 8));
    EXPECT_NE(nullptr, manager->checkService(String16("published")));
    EXPECT_DEATH(setDefaultServiceManager(new LocalServiceManager), "in use already");
}

}  // namespace
}  // namespace android
