// The service manager as a process.

#include <binder/Binder.h>
#include <binder/IServiceManager.h>
#include <binder/Status.h>
#include <gtest/gtest.h>
#include <unistd.h>

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
    EXPECT_EQ(Status::EX_ILLEGAL_ARGUMENT, manager->addService(String16("null"), nullptr));
    EXPECT_FALSE(manager->isDeclared(String16("mine")));
    const Vector<String16> names = manager->listServices();
    EXPECT_TRUE(names.size() == 2 && names[0] == String16("manager"));
    if (geteuid() == 0) {
        EXPECT_EQ(std::to_string(Status::EX_SECURITY), world.start("addOne", "", kApp).receive());
    }
}

TEST(ServiceManagerProcessTest, refusesASecondOneAndAMachineWithoutDriver) {
    const Program::Result alone =
            Program::run("/usr/bin/env", {"KELVO_BINDER=hub", "KELVO_ROOT=/no", SERVICEMANAGER});
    EXPECT_EQ(1, alone.status);
    EXPECT_TRUE(alone.err.starts_with("servicemanager: no binder driver: ")) << alone.err;
    BinderWorld world;
    const Program::Result second = Program::run(
            "/usr/bin/env", {"KELVO_ROOT=" + std::string(getenv("KELVO_ROOT")), SERVICEMANAGER});
    EXPECT_EQ(1, second.status);
    EXPECT_TRUE(second.err.find("servicemanager: another service manager serves there: ") !=
                std::string::npos)
            << second.err;
}

}  // namespace
}  // namespace android
