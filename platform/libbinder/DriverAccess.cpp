#include "DriverAccess.h"

#include <binder/ProcessState.h>
#include <binder_linux/LocalProcess.h>
#include <log/log.h>
#include <utils/Mutex.h>

#include <atomic>
#include <cerrno>
#include <cstring>
#include <memory>

#include "DriverChoice.h"

namespace android {

namespace {

// Guards what decides about the driver, and the wanted threads. Taken after ProcessState's locks;
// the driver's own are taken while it is held.
Mutex sLock;
uint32_t sWantedThreads GUARDED_BY(sLock) = kDefaultMaxThreads;

// Written with sLock held. Never destroyed: threads that outlive main still use it.
std::atomic<BinderDriver*> sDriver = nullptr;
std::atomic<bool> sDriverless = false;

BinderDriver* openDriver(std::string* error) {
    const std::string name = ProcessState::self()->getDriverName().string();
    AutoMutex lock(sLock);
    if (openedDriver() != nullptr || isDriverless()) {
        *error = "this process does without";
        return openedDriver();
    }
    std::unique_ptr<BinderDriver> driver = openBinderDriver(name, error);
    if (driver == nullptr) {
        return nullptr;
    }
    const status_t status = driver->setMaxThreads(sWantedThreads);
    ALOGE_IF(status != OK, "%s does not take the number of threads: %s", driver->name().c_str(),
             strerror(-status));
    sDriver.store(driver.release(), std::memory_order_release);
    return openedDriver();
}

}  // namespace

BinderDriver* openedDriver() {
    return sDriver.load(std::memory_order_acquire);
}

BinderDriver* tryBinderDriver(std::string* error) {
    BinderDriver* driver = openedDriver();
    return driver != nullptr ? driver : openDriver(error);
}

BinderDriver* binderDriver() {
    if (isDriverless()) {
        return nullptr;
    }
    std::string error;
    BinderDriver* driver = tryBinderDriver(&error);
    LOG_ALWAYS_FATAL_IF(driver == nullptr && !isDriverless(), "no binder driver: %s",
                        error.c_str());
    return driver;
}

bool isDriverless() {
    return sDriverless.load(std::memory_order_acquire);
}

void runWithoutDriver() {
    AutoMutex lock(sLock);
    LOG_ALWAYS_FATAL_IF(openedDriver() != nullptr,
                        "a process that uses a binder driver cannot do without it any more");
    sDriverless.store(true, std::memory_order_release);
}

status_t setDriverMaxThreads(uint32_t count) {
    AutoMutex lock(sLock);
    sWantedThreads = count;
    BinderDriver* driver = openedDriver();
    return driver != nullptr ? driver->setMaxThreads(count) : OK;
}

status_t exchangeWithDriver(binder_write_read* exchange, bool readsNext) {
    BinderDriver* driver = binderDriver();
    if (driver == nullptr) {
        return -EBADF;
    }
    // A call and what it makes another thread of this process do are ordered by the driver, which
    // neither the language nor the thread sanitizer knows.
    static std::atomic<uint32_t> order = 0;
    order.fetch_add(1, std::memory_order_release);
    status_t status;
    do {
        // What was consumed before a signal is noted in `exchange` and not handed over again.
        status = driver->writeRead(exchange, readsNext);
    } while (status == -EINTR);
    order.load(std::memory_order_acquire);
    return status;
}

bool isDriverGone(status_t status) {
    return status == -EBADF || status == -ECONNREFUSED;
}

}  // namespace android
