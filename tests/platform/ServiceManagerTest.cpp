#include <limits>
#include <memory>

#include <binder/BinderService.h>
#include <binder/LocalServiceManager.h>
#include <binder/Status.h>
#include <gtest/gtest.h>

#include <thread>

namespace android {
namespace {

TEST(LocalServiceManagerTest, findsWhatWasAddedLast) {
    const sp<LocalServiceManager> manager = new LocalServiceManager;
    const String16 name("phone.service/default");
    EXPECT_EQ(nullptr, manager->getService(name));
    const sp<IBinder> first = new BBinder;
    const sp<IBinder> second = new BBinder;
    EXPECT_EQ(OK, manager->addService(name, first));
    EXPECT_EQ(first, manager->checkService(name));
    EXPECT_EQ(OK, manager->addService(name, second));
    EXPECT_EQ(second, manager->getService(name));
    EXPECT_EQ(second, manager->waitForService(name));
    EXPECT_EQ(1, first->getStrongCount());
    EXPECT_TRUE(manager->removeService(name));
    EXPECT_FALSE(manager->removeService(name));
    EXPECT_EQ(nullptr, manager->checkService(name));
}

TEST(LocalServiceManagerTest, refusesBadNamesAndNullServices) {
    const sp<LocalServiceManager> manager = new LocalServiceManager;
    const sp<IBinder> service = new BBinder;
    const struct {
        std::string name;
        sp<IBinder> service;
        status_t expected;
    } rows[] = {{"a", service, OK},
                {"A0_-./", service, OK},
                {std::string(127, 'a'), service, OK},
                {std::string(128, 'a'), service, binder::Status::EX_ILLEGAL_ARGUMENT},
                {"", service, binder::Status::EX_ILLEGAL_ARGUMENT},
                {"a b", service, binder::Status::EX_ILLEGAL_ARGUMENT},
                {"a:b", service, binder::Status::EX_ILLEGAL_ARGUMENT},
                {"b", nullptr, binder::Status::EX_ILLEGAL_ARGUMENT}};
    for (const auto& row : rows) {
        const String16 name(row.name.c_str());
        EXPECT_EQ(row.expected, manager->addService(name, row.service)) << row.name;
        EXPECT_EQ(row.expected == OK, manager->checkService(name) != nullptr) << row.name;
    }
}

TEST(LocalServiceManagerTest, listsByDumpPriority) {
    const sp<LocalServiceManager> manager = new LocalServiceManager;
    const auto list = [&](int flags) {
        std::string names;
        for (const String16& name : manager->listServices(flags)) {
            names += String8(name).string();
        }
        return names;
    };
    manager->addService(String16("d"), new BBinder);
    manager->addService(
            String16("c"), new BBinder, false,
            IServiceManager::DUMP_FLAG_PRIORITY_CRITICAL | IServiceManager::DUMP_FLAG_PROTO);
    EXPECT_EQ("cd", list(IServiceManager::DUMP_FLAG_PRIORITY_ALL));
    EXPECT_EQ("d", list(IServiceManager::DUMP_FLAG_PRIORITY_DEFAULT));
    EXPECT_EQ("c", list(IServiceManager::DUMP_FLAG_PROTO));
    EXPECT_EQ("", list(IServiceManager::DUMP_FLAG_PRIORITY_HIGH));
}

TEST(LocalServiceManagerTest, waitsForAServiceOfAnotherThread) {
    const sp<LocalServiceManager> manager = new LocalServiceManager;
    const sp<IBinder> service = new BBinder;
    std::thread server([&] {
        manager->addService(String16("other"), new BBinder);
        manager->addService(String16("late"), service);
    });
    EXPECT_EQ(service, manager->waitForService(String16("late")));
    server.join();
}

TEST(LocalServiceManagerTest, declaresWithoutAdding) {
    const sp<LocalServiceManager> manager = new LocalServiceManager;
    const String16 name("hal/default");
    manager->addService(name, new BBinder);
    EXPECT_FALSE(manager->isDeclared(name));
    manager->removeService(name);
    manager->declareService(name);
    EXPECT_TRUE(manager->isDeclared(name));
    EXPECT_EQ(nullptr, manager->checkService(name));
}

struct Published : BBinder {
    static const char* getServiceName() { return "published"; }
};

TEST(ServiceManagerTest, isOneForTheProcess) {
    const sp<IServiceManager> manager = defaultServiceManager();
    EXPECT_EQ(manager, defaultServiceManager());
    ASSERT_EQ(OK, BinderService<Published>::publish(false, 8));
    const sp<IBinder> first = manager->checkService(String16("published"));
    ASSERT_EQ(OK, BinderService<Published>::publish(false, 8));
    EXPECT_NE(first, manager->checkService(String16("published")));
    EXPECT_DEATH(setDefaultServiceManager(new LocalServiceManager), "in use already");
}

TEST(ServiceManagerTest, canBeChosenBeforeItIsUsed) {
    const sp<IServiceManager> chosen = new LocalServiceManager;
    setDefaultServiceManager(chosen);
    EXPECT_EQ(chosen, defaultServiceManager());
    EXPECT_DEATH(setDefaultServiceManager(chosen), "in use already");
}

}  // namespace
}  // namespace android
