#include <binder/BinderService.h>
#include <binder/Status.h>
#include <binder_linux/LocalServiceManager.h>
#include <gtest/gtest.h>

#include <thread>

namespace android {
namespace {

struct LocalServiceManagerTest : testing::Test {
    const sp<LocalServiceManager> mManager = new LocalServiceManager;
    const sp<IBinder> mService = new BBinder;
    const String16 mName{"phone.service/default"};
};

TEST_F(LocalServiceManagerTest, findsWhatWasAddedLast) {
    EXPECT_EQ(nullptr, mManager->getService(mName));
    const sp<IBinder> first = new BBinder;
    EXPECT_EQ(OK, mManager->addService(mName, first));
    EXPECT_EQ(first, mManager->checkService(mName));
    EXPECT_EQ(OK, mManager->addService(mName, mService));
    EXPECT_EQ(mService, mManager->getService(mName));
    EXPECT_EQ(1, first->getStrongCount());
    EXPECT_TRUE(mManager->removeService(mName));
    EXPECT_FALSE(mManager->removeService(mName));
    EXPECT_EQ(nullptr, mManager->checkService(mName));
}

TEST_F(LocalServiceManagerTest, refusesBadNamesAndNullServices) {
    for (const std::string& name : {std::string("A0_-./"), std::string(127, 'a')}) {
        EXPECT_EQ(OK, mManager->addService(String16(name.c_str()), mService)) << name;
    }
    const auto refusal = binder::Status::EX_ILLEGAL_ARGUMENT;
    for (const std::string& name :
         {std::string(128, 'a'), std::string(), std::string("a b"), std::string("a:b")}) {
        EXPECT_EQ(refusal, mManager->addService(String16(name.c_str()), mService)) << name;
    }
    EXPECT_EQ(refusal, mManager->addService(mName, nullptr));
    EXPECT_EQ(2u, mManager->listServices(IServiceManager::DUMP_FLAG_PRIORITY_ALL).size());
}

TEST_F(LocalServiceManagerTest, waitsForAServiceOfAnotherThread) {
    const std::jthread server([&] {
        mManager->addService(String16("other"), mService);
        mManager->addService(mName, mService);
    });
    EXPECT_EQ(mService, mManager->waitForService(mName));
}

struct Published : BBinder {
    static const char* getServiceName() { return "published"; }
};

TEST(ServiceManagerTest, isOneForTheProcess) {
    const sp<LocalServiceManager> manager = installLocalServiceManager();
    EXPECT_EQ(manager, installLocalServiceManager(new LocalServiceManager));
    ASSERT_EQ(OK, BinderService<Published>::publish(false, 8));
    EXPECT_NE(nullptr, manager->checkService(String16("published")));
    EXPECT_DEATH(setDefaultServiceManager(new LocalServiceManager), "in use already");
}

}  // namespace
}  // namespace android
