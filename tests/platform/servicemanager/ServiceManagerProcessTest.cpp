// The service manager as a process.

#include <android/os/BnClientCallback.h>
#include <android/os/IServiceManager.h>
#include <binder/Binder.h>
#include <binder/IServiceManager.h>
#include <binder/ProcessState.h>
#include <binder/Status.h>
#include <gmock/gmock.h>
#include <unistd.h>

#include <array>
#include <future>

#include "support/BinderWorld.h"
#include "support/Program.h"

namespace android {
namespace {

using binder::Status;

constexpr uid_t kApp = 10050;

int addOne(RoleLink& link) {
    const status_t status = defaultServiceManager()->addService(String16("one"), new BBinder);
    link.send(std::to_string(status));
    return 0;
}
const Role kAddOne("addOne", addOne);

TEST(ServiceManagerProcessTest, answersAsAndroidsDoes) {
    BinderWorld world;
    const sp<IServiceManager> manager = defaultServiceManager();
    EXPECT_NE(nullptr, manager->checkService(String16("manager")));
    EXPECT_EQ(nullptr, manager->checkService(String16("absent")));
    // What the driver alone holds would look lost to the leak sanitizer.
    static const sp<IBinder> service = new BBinder;
    EXPECT_EQ(OK, manager->addService(String16("mine"), service));
    EXPECT_EQ(Status::EX_ILLEGAL_ARGUMENT, manager->addService(String16("a b"), service));
    EXPECT_FALSE(manager->isDeclared(String16("mine")));
    const Vector<String16> names = manager->listServices();
    EXPECT_TRUE(names.size() == 2 && names[0] == String16("manager"));
    if (geteuid() == 0) {
        EXPECT_EQ(std::to_string(Status::EX_SECURITY), world.start("addOne", "", kApp).receive());
    }
}

/** Each is told once: the second time throws. */
struct Clients : os::BnClientCallback {
    Status onClients(const sp<IBinder>&, bool hasClients) override {
        mTold.at(hasClients ? 1 : 0).set_value();
        return Status::ok();
    }
    /** Whether that is told within two of the manager's intervals. */
    bool areTold(bool hasClients) {
        auto told = mTold.at(hasClients ? 1 : 0).get_future();
        return told.wait_for(std::chrono::seconds(12)) == std::future_status::ready;
    }
    std::array<std::promise<void>, 2> mTold;
};

int holdOne(RoleLink& link) {
    const sp<IBinder> held = defaultServiceManager()->checkService(String16("lazy"));
    link.send(held != nullptr ? "held" : "absent");
    link.receive(-1);
    return 0;
}
const Role kHoldOne("holdOne", holdOne);

TEST(ServiceManagerProcessTest, knowsFromTheDriverWhoHasClients) {
    BinderWorld world;
    ProcessState::self()->startThreadPool();
    const auto manager =
            interface_cast<os::IServiceManager>(ProcessState::self()->getContextObject(nullptr));
    static const sp<IBinder> service = new BBinder;
    static const sp<Clients> clients = new Clients;
    const auto unregister = [&] {
        return manager->tryUnregisterService("lazy", service).exceptionCode();
    };
    ASSERT_TRUE(manager->addService("lazy", service, false, 1).isOk());
    ASSERT_TRUE(manager->registerClientCallback("lazy", service, clients).isOk());
    for (int i = 0; i < 2; ++i) {
        ASSERT_EQ("held", world.start("holdOne").receive());
    }
    EXPECT_EQ(Status::EX_ILLEGAL_STATE, unregister());
    EXPECT_TRUE(clients->areTold(true));
    EXPECT_EQ(Status::EX_ILLEGAL_STATE, unregister());
    world.endRoles();
    EXPECT_TRUE(clients->areTold(false));
    EXPECT_EQ(Status::EX_NONE, unregister());
    EXPECT_EQ(nullptr, defaultServiceManager()->checkService(String16("lazy")));
}

TEST(ServiceManagerProcessTest, refusesASecondOneAndAMachineWithoutDriver) {
    const auto errorOf = [](std::vector<std::string> settings) {
        settings.emplace_back(SERVICEMANAGER);
        const Program::Result result = Program::run("/usr/bin/env", settings);
        EXPECT_EQ(1, result.status);
        return result.err;
    };
    EXPECT_THAT(errorOf({"KELVO_BINDER=hub", "KELVO_ROOT=/no"}),
                testing::StartsWith("servicemanager: no binder driver: "));
    BinderWorld world;
    EXPECT_THAT(errorOf({"KELVO_ROOT=" + std::string(getenv("KELVO_ROOT"))}),
                testing::HasSubstr("servicemanager: another service manager serves there: "));
}

}  // namespace
}  // namespace android
