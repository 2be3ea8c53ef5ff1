// The service manager as an object: what it answers to whom.

#include "ServiceManager.h"

#include <android/os/BnClientCallback.h>
#include <android/os/BnServiceCallback.h>
#include <binder/Stability.h>
#include <binder_linux/LocalCall.h>
#include <gmock/gmock.h>

#include <utility>

#include "support/LogCapture.h"
#include "support/Phone.h"

using testing::ElementsAre;

namespace android {
namespace {

using binder::Status;
using os::IServiceManager;

constexpr int32_t kDefault = IServiceManager::DUMP_FLAG_PRIORITY_DEFAULT;
constexpr uid_t kSystem = 1000;
constexpr pid_t kPid = 77;

class Notices : public os::BnServiceCallback {
  public:
    Status onRegistration(const std::string& name, const sp<IBinder>& service) override {
        names.push_back(name);
        last = service;
        return Status::ok();
    }
    std::vector<std::string> names;
    sp<IBinder> last;
};

class Clients : public os::BnClientCallback {
  public:
    Status onClients(const sp<IBinder>&, bool hasClients) override {
        told.push_back(hasClients);
        return Status::ok();
    }
    std::vector<bool> told;
};

class ServiceManagerTest : public testing::Test {
  protected:
    int32_t watchClients(const std::string& name, const sp<IBinder>& service,
                         const sp<os::IClientCallback>& callback, pid_t pid = kPid) {
        const LocalCall call(kSystem, pid);
        return mManager->registerClientCallback(name, service, callback).exceptionCode();
    }
    int32_t unregister(const std::string& name, const sp<IBinder>& service, pid_t pid = kPid) {
        const LocalCall call(kSystem, pid);
        return mManager->tryUnregisterService(name, service).exceptionCode();
    }
    int32_t add(const std::string& name, const sp<IBinder>& service, uid_t uid = kSystem,
                bool allowIsolated = false, int32_t priority = kDefault) {
        const LocalCall call(uid, kPid);
        return mManager->addService(name, service, allowIsolated, priority).exceptionCode();
    }
    sp<IBinder> check(const std::string& name, uid_t uid = kSystem) {
        const LocalCall call(uid, kPid);
        sp<IBinder> service;
        EXPECT_TRUE(mManager->checkService(name, &service).isOk());
        return service;
    }
    std::vector<std::string> list(int32_t priority) {
        std::vector<std::string> names;
        EXPECT_TRUE(mManager->listServices(priority, &names).isOk());
        return names;
    }

    ssize_t mReferences = 1;  // what the driver says of every service
    const sp<ServiceManager> mManager =
            new ServiceManager([this](const sp<IBinder>&) { return mReferences; });
    const sp<IBinder> mService = new BBinder;
};

TEST_F(ServiceManagerTest, letsOnlyTheSystemAddAndOnlyLegalNames) {
    const std::tuple<std::string, uid_t, int32_t> rows[] = {
            {"first", 0, Status::EX_NONE},
            {std::string(127, 'a'), 9999, Status::EX_NONE},
            {"of.the/second_user-0", 109999, Status::EX_NONE},
            {"app", 10000, Status::EX_SECURITY},
            {"app", 110000, Status::EX_SECURITY},
            {"app", 99000, Status::EX_SECURITY},
            {"", kSystem, Status::EX_ILLEGAL_ARGUMENT},
            {"a b", kSystem, Status::EX_ILLEGAL_ARGUMENT},
            {std::string(128, 'a'), kSystem, Status::EX_ILLEGAL_ARGUMENT},
    };
    for (const auto& [name, uid, exception] : rows) {
        EXPECT_EQ(add(name, mService, uid), exception) << name << " " << uid;
        EXPECT_EQ(check(name), exception == Status::EX_NONE ? mService : nullptr) << name;
    }
    EXPECT_EQ(add("null", nullptr), Status::EX_ILLEGAL_ARGUMENT);
    EXPECT_EQ(list(kDefault).size(), 3u);
}

TEST_F(ServiceManagerTest, hidesServicesFromIsolatedProcessesAndByPriority) {
    add("b", mService);
    add("a", mService, kSystem, true, IServiceManager::DUMP_FLAG_PRIORITY_HIGH);
    EXPECT_EQ(check("b", 89999), mService);
    for (const uid_t isolated : {90000U, 98999U, 99999U, 190000U, 199999U}) {
        EXPECT_EQ(check("b", isolated), nullptr) << isolated;
        EXPECT_EQ(check("a", isolated), mService) << isolated;
    }
    EXPECT_EQ(check("b", 189999), mService);
    EXPECT_THAT(list(IServiceManager::DUMP_FLAG_PRIORITY_ALL), ElementsAre("a", "b"));
    EXPECT_THAT(list(IServiceManager::DUMP_FLAG_PRIORITY_HIGH), ElementsAre("a"));
}

TEST_F(ServiceManagerTest, takesAnInterfaceOfTheWholePhoneOnlyUnderADeclaredName) {
    phone().setNode("/vendor/etc/vintf/declared", "a.IFoo/default\n");
    internal::Stability::markVintf(mService.get());
    EXPECT_EQ(add("a.IFoo/other", mService), Status::EX_ILLEGAL_ARGUMENT);
    EXPECT_EQ(add("foo", mService), Status::EX_ILLEGAL_ARGUMENT);
    EXPECT_EQ(add("foo", new BBinder), Status::EX_NONE);
    EXPECT_EQ(add("a.IFoo/default", mService), Status::EX_NONE);
    EXPECT_THAT(list(kDefault), ElementsAre("a.IFoo/default", "foo"));
}

TEST_F(ServiceManagerTest, tellsTheServerWhenClientsComeAndGo) {
    const sp<Clients> clients = new Clients;
    add("kelvo", mService);
    EXPECT_EQ(watchClients("kelvo", mService, nullptr), Status::EX_NULL_POINTER);
    EXPECT_EQ(watchClients("absent", mService, clients), Status::EX_ILLEGAL_ARGUMENT);
    EXPECT_EQ(watchClients("kelvo", new BBinder, clients), Status::EX_ILLEGAL_ARGUMENT);
    EXPECT_EQ(watchClients("kelvo", mService, clients, kPid + 1), Status::EX_UNSUPPORTED_OPERATION);
    EXPECT_EQ(watchClients("kelvo", mService, clients), Status::EX_NONE);
    const auto toldOf = [&](ssize_t references) {
        mReferences = references;
        mManager->checkClients();
        return std::exchange(clients->told, {});
    };
    EXPECT_THAT(toldOf(1), ElementsAre());
    EXPECT_THAT(toldOf(2), ElementsAre(true));
    EXPECT_THAT(toldOf(2), ElementsAre());
    EXPECT_THAT(toldOf(-1), ElementsAre()) << "the driver cannot tell";
    EXPECT_THAT(toldOf(1), ElementsAre(false));
    check("kelvo");  // by one who has gone before anybody looks
    EXPECT_THAT(toldOf(1), ElementsAre(true, false));
    EXPECT_THAT(toldOf(1), ElementsAre());
}

TEST_F(ServiceManagerTest, unregistersAServiceForItsServerWhenItHasNoClients) {
    const sp<Clients> clients = new Clients;
    add("kelvo", mService);
    EXPECT_EQ(unregister("kelvo", mService), Status::EX_ILLEGAL_STATE) << "nobody counts";
    mManager->checkClients();
    EXPECT_EQ(watchClients("kelvo", mService, clients), Status::EX_NONE);
    mManager->checkClients();
    EXPECT_EQ(unregister("kelvo", nullptr), Status::EX_NULL_POINTER);
    EXPECT_EQ(unregister("absent", mService), Status::EX_ILLEGAL_STATE);
    EXPECT_EQ(unregister("kelvo", new BBinder), Status::EX_ILLEGAL_STATE);
    EXPECT_EQ(unregister("kelvo", mService, kPid + 1), Status::EX_UNSUPPORTED_OPERATION);
    check("kelvo");
    EXPECT_EQ(unregister("kelvo", mService), Status::EX_ILLEGAL_STATE) << "just looked up";
    mManager->checkClients();
    mReferences = 3;  // the manager's, the driver's for this call, a client's
    EXPECT_EQ(unregister("kelvo", mService), Status::EX_ILLEGAL_STATE);
    mReferences = 2;
    EXPECT_EQ(unregister("kelvo", mService), Status::EX_ILLEGAL_STATE) << "there was one just now";
    mManager->checkClients();
    EXPECT_EQ(unregister("kelvo", mService), Status::EX_NONE);
    EXPECT_EQ(check("kelvo"), nullptr);
}

TEST_F(ServiceManagerTest, saysThatAServiceIsOverwritten) {
    const sp<IBinder> second = new BBinder;
    add("kelvo", mService, 0);
    LogCapture log;
    add("kelvo", second);
    EXPECT_EQ(check("kelvo"), second);
    EXPECT_TRUE(
            log.has("Service 'kelvo' originally registered under UID 0 (PID 77) is overwritten "
                    "by UID 1000 (PID 77)"));
}

TEST_F(ServiceManagerTest, tellsCallbacksAtOnceAndAtEachRegistration) {
    const sp<Notices> notices = new Notices;
    add("there", mService);
    EXPECT_TRUE(mManager->registerForNotifications("there", notices).isOk());
    EXPECT_EQ(notices->last, mService);
    EXPECT_TRUE(mManager->registerForNotifications("later", notices).isOk());
    add("other", mService);
    EXPECT_THAT(notices->names, ElementsAre("there"));
    add("later", new BBinder);
    add("later", mService);
    EXPECT_TRUE(mManager->unregisterForNotifications("later", notices).isOk());
    add("later", mService);
    EXPECT_THAT(notices->names, ElementsAre("there", "later", "later"));
    EXPECT_EQ(mManager->unregisterForNotifications("later", notices).exceptionCode(),
              Status::EX_ILLEGAL_STATE);
}

TEST_F(ServiceManagerTest, boundsTheCallbacksOfAnApp) {
    const sp<Notices> notices = new Notices;
    const auto watch = [&](uid_t uid, const std::string& name) {
        const LocalCall call(uid, kPid);
        return mManager->registerForNotifications(name, notices).exceptionCode();
    };
    constexpr uid_t kApp = 10050;
    for (size_t i = 0; i < ServiceManager::kMostCallbacksOfApp; ++i) {
        EXPECT_EQ(watch(kApp, "name" + std::to_string(i)), Status::EX_NONE);
    }
    EXPECT_EQ(watch(kApp, "more"), Status::EX_ILLEGAL_STATE);
    EXPECT_EQ(watch(kApp + 1, "more"), Status::EX_NONE);
    EXPECT_EQ(watch(kSystem, "more"), Status::EX_NONE);
    EXPECT_TRUE(mManager->unregisterForNotifications("name7", notices).isOk());
    EXPECT_EQ(watch(kApp, "more"), Status::EX_NONE);
}

TEST_F(ServiceManagerTest, readsWhatTheManifestDeclaresAtEachAsk) {
    bool declared = true;
    mManager->isDeclared("a.IFoo/default", &declared);
    EXPECT_FALSE(declared);
    phone().setNode("/vendor/etc/vintf/declared",
                    "# what this phone has\n\n  a.IFoo/default # the first\na.IFoo/x\r\nb.IBar/y");
    mManager->isDeclared("b.IBar/y", &declared);
    EXPECT_TRUE(declared);
    std::vector<std::string> instances;
    mManager->getDeclaredInstances("a.IFoo", &instances);
    EXPECT_THAT(instances, ElementsAre("default", "x"));
}

}  // namespace
}  // namespace android
