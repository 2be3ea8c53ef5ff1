// What a client of the real daemon sees: a question for the shell temperature through the hub,
// against the floor of a hub; and how long it takes until the last of N listeners has heard.

#include <poll.h>
#include <semaphore.h>
#include <stdlib.h>
#include <sys/stat.h>
#include <time.h>

#include <binder/Binder.h>
#include <binder/IPCThreadState.h>
#include <binder/IServiceManager.h>
#include <binder/Parcel.h>
#include <binder/ProcessState.h>

#include <chrono>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <string>
#include <vector>

#include "BenchPhone.h"
#include "ForkedProcess.h"
#include "RelayFloor.h"
#include "RoundTrips.h"
#include "sim/process/BinderPlatform.h"
#include "sim/process/PhoneProcess.h"
#include "sim/tree/DeviceTree.h"
#include "sim/tree/PhoneTree.h"
#include "sim/tree/ShellTempNode.h"
#include "sim/tree/TemporaryFolder.h"

namespace {

using android::IBinder;
using android::Parcel;
using android::sp;
using android::String16;

constexpr double kBudget = 2.0;
// A listener's share may grow by this much from ten listeners to a thousand.
constexpr double kLinearBudget = 1.5;
constexpr int kFanOuts = 20;
constexpr int kLimitMs = 30000;
constexpr uint32_t kRegisterClient = 1;
constexpr uint32_t kNotifyThermalStatus = 15;
constexpr uint32_t kShellTempAndType = 22;
constexpr uint32_t kStatusCall = 3;  // of a listener

struct Request : Parcel {
    Request() { writeInterfaceToken(String16("com.zenta.kelvo.IKelvoService")); }
};

/** The service of the phone below KELVO_ROOT. */
class Kelvo {
  public:
    explicit Kelvo(const sp<IBinder>& service) : mService(service) {}

    bool transact(uint32_t code, const Parcel& data, Parcel& reply) const {
        return mService->transact(code, data, &reply) == android::OK;
    }
    bool getShellTempAndType() const {
        Request data;
        Parcel reply;
        return transact(kShellTempAndType, data, reply) && reply.dataSize() > 0;
    }
    bool addListener(const sp<IBinder>& listener) const {
        Request data;
        data.writeStrongBinder(listener);
        Parcel reply;
        return transact(kRegisterClient, data, reply);
    }
    bool notifyStatus(int32_t status) const {
        Request data;
        data.writeInt32(status);
        Parcel reply;
        return transact(kNotifyThermalStatus, data, reply);
    }

  private:
    const sp<IBinder> mService;
};

sp<IBinder> findService() {
    for (int tries = kLimitMs / 10; tries > 0; --tries) {
        const sp<IBinder> service =
                android::defaultServiceManager()->checkService(String16("kelvo"));
        if (service != nullptr) {
            return service;
        }
        poll(nullptr, 0, 10);
    }
    return nullptr;
}

/** Calls with this status that all listeners of this process got. */
class Arrivals {
  public:
    Arrivals() { sem_init(&mSemaphore, 0, 0); }

    void add() { sem_post(&mSemaphore); }
    bool wait(int count) {
        timespec limit{};
        clock_gettime(CLOCK_REALTIME, &limit);
        limit.tv_sec += kLimitMs / 1000;
        for (int i = 0; i < count; ++i) {
            if (sem_timedwait(&mSemaphore, &limit) != 0) {
                return false;
            }
        }
        return true;
    }

  private:
    sem_t mSemaphore;
};

class Listener : public android::BBinder {
  public:
    explicit Listener(Arrivals& arrivals) : mArrivals(arrivals) {}

  private:
    android::status_t onTransact(uint32_t code, const Parcel&, Parcel* reply, uint32_t) override {
        reply->writeInt32(0);  // no exception
        if (code == kStatusCall) {
            mArrivals.add();
        }
        return android::OK;
    }

    Arrivals& mArrivals;
};

/** Microseconds from the request to the last of `count` listeners; negative when one is missing. */
double measureFanOut(const Kelvo& kelvo, Arrivals& arrivals, int count) {
    bench::Samples samples;
    int32_t status = 0;
    const bool good = samples.addBlock(
            [&] {
                ++status;
                return kelvo.notifyStatus(status) && arrivals.wait(count);
            },
            kFanOuts);
    return good ? samples.percentile(50) : -1;
}

int fanOut() {
    const sp<IBinder> service = findService();
    if (service == nullptr) {
        return 1;
    }
    android::ProcessState::self()->startThreadPool();
    const Kelvo kelvo(service);
    Arrivals arrivals;
    std::vector<sp<Listener>> listeners;
    double shareOfTen = 0;
    double share = 0;
    for (const int count : {1, 10, 100, 1000}) {
        while (static_cast<int>(listeners.size()) < count) {
            listeners.push_back(new Listener(arrivals));
            // A new listener is told the status at once.
            if (!kelvo.addListener(listeners.back()) || !arrivals.wait(1)) {
                return 1;
            }
        }
        const double micros = measureFanOut(kelvo, arrivals, count);
        if (micros < 0) {
            std::fprintf(stderr, "service_bench: a listener was not told\n");
            return 1;
        }
        share = micros / count;
        shareOfTen = count == 10 ? share : shareOfTen;
        std::printf("fan-out to %4d listeners: %.0f us, %.1f us each\n", count, micros, share);
    }
    std::printf("fan-out: %.2f x a listener's share from 10 to 1000 (budget %.1f)\n",
                share / shareOfTen, kLinearBudget);
    return share <= kLinearBudget * shareOfTen ? 0 : 1;
}

int askShellTemp(const bench::RelayFloor& relay) {
    const sp<IBinder> service = findService();
    if (service == nullptr) {
        return 1;
    }
    const Kelvo kelvo(service);
    return bench::keepsBudget({"shell temperature through the hub", "relay", kBudget,
                               [&] { return kelvo.getShellTempAndType(); },
                               [&] { return relay.roundTrip(); }})
                   ? 0
                   : 1;
}

/** A phone with the daemon on it, then each measurement in a process of its own. */
int measure() {
    const sim::Scenario scenario = bench::phone();
    const std::string programs = std::filesystem::read_symlink("/proc/self/exe").parent_path();
    const sim::TemporaryFolder folder("kelvo-bench-");
    sim::DeviceTree tree(folder.path());
    sim::ShellTempNode node(tree);
    sim::PhoneTree(tree, scenario, [&](bool present) { node.setPresent(present); }).build();
    setenv("KELVO_ROOT", folder.path().c_str(), 1);
    const sim::BinderPlatform binder(programs, folder.path(), folder.path());
    const sim::PhoneProcess kelvod({programs + "/kelvod"}, folder.path(), "/dev/null");
    const bench::RelayFloor relay;
    const int question = bench::ForkedProcess([&] { return askShellTemp(relay); }).wait();
    const int listeners = bench::ForkedProcess(fanOut).wait();
    return question == 0 && listeners == 0 ? 0 : 1;
}

}  // namespace

int main() {
    // Which processors the scheduler gives the processes in turn would decide the comparison.
    return bench::ForkedProcess([] {
               bench::useOneProcessor();
               return measure();
           })
            .wait();
}
