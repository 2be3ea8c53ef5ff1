#include "KelvodTest.h"

#include <binder/IServiceManager.h>
#include <binder/ProcessState.h>
#include <poll.h>
#include <stdlib.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <android-base/unique_fd.h>

#include "client/CallValues.h"
#include "common/ConfigStore.h"
#include "support/Files.h"
#include "support/Json.h"

using android::IBinder;
using android::Parcel;
using android::sp;
using android::String16;

namespace {

std::string listFrom(int32_t first) {
    std::string list = "[-1";
    for (int32_t i = 1; i < 21; ++i) {
        list += "," + std::to_string(first + i);
    }
    return list + "]";
}

}  // namespace

KelvodRequest::KelvodRequest() {
    writeInterfaceToken(String16(client::kServiceDescriptor));
}

sp<IBinder> kelvodService() {
    return android::defaultServiceManager()->waitForService(String16("kelvo"));
}

android::status_t callKelvod(uint32_t code, const std::vector<client::Argument>& arguments) {
    KelvodRequest request;
    Parcel reply;
    for (const client::Argument& argument : arguments) {
        client::writeArgument(argument, request);
    }
    return kelvodService()->transact(code, request, &reply);
}

std::string kelvodConfig(int32_t hold, int32_t holdDown, const std::string& members) {
    const std::string statuses = "[0,1,2,3,4,5,6,7,8,9,10,11,12,13,14,15,16,17,18,19,20]";
    return common::encryptConfig(
            json("{'shell_temp_fitting_model':{" + scene("default", 0, "skin") + members +
                 "},'thermal_status_model':{'temp_threshold':" + listFrom(hold) +
                 ",'temp_threshold_down':" + listFrom(holdDown) + ",'thermal_status':" + statuses +
                 ",'thermal_status_report':" + statuses + "}}"));
}

void buildSmallPhone(sim::DeviceTree& tree) {
    tree.addFolder("/data");
    tree.addZone(0, "skin", 40000);
    tree.setNode("/proc/shell-temp", "");
    tree.setProperty("persist.sys.kelvo.enable", "1");
    tree.setProperty("persist.sys.kelvo.loglevel", "1");
}

KelvodTest::KelvodTest() : mTree(getenv("KELVO_ROOT")), mLog(mTree.hostPath("/data/kelvod.log")) {
    android::ProcessState::self()->startThreadPool();  // for notices and listeners
    buildSmallPhone(mTree);
    setConfig(30);
}

void KelvodTest::setConfig(int32_t hold, const std::string& members) {
    mTree.setNode("/system_ext/etc/kelvo/kelvo.conf", kelvodConfig(hold, hold - 1, members));
}

void KelvodTest::startKelvod() {
    mKelvod.emplace(std::vector<std::string>{programPath("kelvod")}, mTree.root(), mLog.path());
    ASSERT_NE(kelvodService(), nullptr);
    ASSERT_TRUE(logs("kelvo misc init compeleted!"));
}

std::string KelvodTest::awaitEnding() const {
    const android::base::unique_fd process(
            static_cast<int>(syscall(SYS_pidfd_open, mKelvod->pid(), 0)));
    pollfd ended{process.get(), POLLIN, 0};
    return poll(&ended, 1, kBinderWorldLimitMs) == 1 ? mKelvod->ending().value_or("gone") : "alive";
}

RoleProcess& KelvodTest::startListeners(size_t count, std::optional<uid_t> uid) {
    RoleProcess& process = mWorld.start(kListenRole, std::to_string(count), uid);
    EXPECT_EQ(process.receive(), "ready");
    return process;
}
