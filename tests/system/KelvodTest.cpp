#include "KelvodTest.h"

#include <binder/IServiceManager.h>
#include <binder/ProcessState.h>
#include <poll.h>
#include <stdlib.h>
#include <sys/inotify.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <android-base/unique_fd.h>

#include <chrono>
#include <fstream>

#include "client/CallValues.h"
#include "common/ConfigStore.h"
#include "support/Files.h"
#include "support/Json.h"

using android::IBinder;
using android::Parcel;
using android::sp;
using android::String16;

namespace {

using Clock = std::chrono::steady_clock;

constexpr int kLookMs = 1000;  // should a change of the log not be seen

/** Counts a text in a log that grows. */
class LogCounter {
  public:
    LogCounter(const std::string& path, std::string text) : mStream(path), mText(std::move(text)) {}

    size_t count() {
        mStream.clear();
        mLog.append(std::istreambuf_iterator<char>(mStream), {});
        for (size_t at = mLog.find(mText); at != std::string::npos; at = mLog.find(mText)) {
            mLog.erase(0, at + 1);
            ++mCount;
        }
        mLog.erase(0, mLog.size() - std::min(mLog.size(), mText.size()));
        return mCount;
    }

  private:
    std::ifstream mStream;
    const std::string mText;
    std::string mLog;  // what may still be a part of the text
    size_t mCount = 0;
};

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

KelvodTest::KelvodTest()
      : mTree(getenv("KELVO_ROOT")), mLogPath(mTree.hostPath("/data/kelvod.log")) {
    android::ProcessState::self()->startThreadPool();  // for notices and listeners
    mTree.addFolder("/data");
    mTree.addZone(0, "skin", 40000);
    mTree.setNode("/proc/shell-temp", "");
    mTree.setProperty("persist.sys.kelvo.enable", "1");
    mTree.setProperty("persist.sys.kelvo.loglevel", "1");
    setConfig(30);
}

void KelvodTest::setConfig(int32_t hold, const std::string& members) {
    const std::string statuses = "[0,1,2,3,4,5,6,7,8,9,10,11,12,13,14,15,16,17,18,19,20]";
    mTree.setNode("/system_ext/etc/kelvo/kelvo.conf",
                  common::encryptConfig(json(
                          "{'shell_temp_fitting_model':{" + scene("default", 0, "skin") + members +
                          "},'thermal_status_model':{'temp_threshold':" + listFrom(hold) +
                          ",'temp_threshold_down':" + listFrom(hold - 1) + ",'thermal_status':" +
                          statuses + ",'thermal_status_report':" + statuses + "}}")));
}

void KelvodTest::startKelvod() {
    mKelvod.emplace(std::vector<std::string>{programPath("kelvod")}, mTree.root(), mLogPath);
    ASSERT_NE(kelvodService(), nullptr);
    ASSERT_TRUE(logs("kelvo misc init compeleted!"));
}

size_t KelvodTest::countInLog(const std::string& text) const {
    return LogCounter(mLogPath, text).count();
}

std::string KelvodTest::awaitEnding() const {
    const android::base::unique_fd process(
            static_cast<int>(syscall(SYS_pidfd_open, mKelvod->pid(), 0)));
    pollfd ended{process.get(), POLLIN, 0};
    return poll(&ended, 1, kBinderWorldLimitMs) == 1 ? mKelvod->ending().value_or("gone") : "alive";
}

bool KelvodTest::logs(const std::string& text, size_t count) const {
    const android::base::unique_fd watch(inotify_init1(IN_NONBLOCK | IN_CLOEXEC));
    inotify_add_watch(watch.get(), mLogPath.c_str(), IN_MODIFY);
    LogCounter counter(mLogPath, text);
    const Clock::time_point end = Clock::now() + std::chrono::milliseconds(kBinderWorldLimitMs);
    while (counter.count() < count) {
        if (Clock::now() > end) {
            return false;
        }
        pollfd changes{watch.get(), POLLIN, 0};
        poll(&changes, 1, kLookMs);
        char events[4096];
        while (read(watch.get(), events, sizeof(events)) > 0) {
        }
    }
    return true;
}

RoleProcess& KelvodTest::startListeners(size_t count, std::optional<uid_t> uid) {
    RoleProcess& process = mWorld.start(kListenRole, std::to_string(count), uid);
    EXPECT_EQ(process.receive(), "ready");
    return process;
}
