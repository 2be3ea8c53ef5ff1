// A message from its posting to the end of its handling, against the barest hand-over between two
// threads: a locked queue, an eventfd and epoll.

#include <semaphore.h>
#include <sys/epoll.h>
#include <sys/eventfd.h>
#include <unistd.h>

#include <binder/Binder.h>

#include <cstdint>
#include <cstdio>
#include <deque>
#include <functional>
#include <mutex>
#include <string>
#include <thread>
#include <utility>

#include "RoundTrips.h"
#include "base/WorkThread.h"
#include "core/Connections.h"
#include "core/MessageManager.h"
#include "sim/process/RootedRun.h"

namespace {

constexpr double kBudget = 1.3;

/** Posted by the thread that handled, awaited by the one that posted. */
class Handled {
  public:
    Handled() { sem_init(&mSemaphore, 0, 0); }
    ~Handled() { sem_destroy(&mSemaphore); }
    Handled(const Handled&) = delete;
    Handled& operator=(const Handled&) = delete;

    void post() { sem_post(&mSemaphore); }
    bool wait() { return sem_wait(&mSemaphore) == 0; }

  private:
    sem_t mSemaphore;
};

/** Says when the message that holds it is gone, which is right after its handling. */
class Witness : public android::BBinder {
  public:
    explicit Witness(Handled& handled) : mHandled(handled) {}

  private:
    ~Witness() override { mHandled.post(); }

    Handled& mHandled;
};

void* runLoop(void*) {
    kelvo::MessageManager::getInstance().joinLoop();
    return nullptr;
}

/** Through the daemon's loop; the code is one that no handler takes. */
bool postMessage(Handled& handled) {
    {
        kelvo::KelvoMessage message;
        message.what = kelvo::MSG_THERMAL_STATE;
        message.binder = new Witness(handled);
        kelvo::MessageManager::getInstance().sendMessage(message);
    }
    return handled.wait();
}

/** The floor. Its thread ends with the program. */
class BareLoop {
  public:
    BareLoop() {
        epoll_event event{};
        event.events = EPOLLIN;
        epoll_ctl(mEpoll, EPOLL_CTL_ADD, mWake, &event);
        std::thread([this] { run(); }).detach();
    }

    void post(std::function<void()> work) {
        {
            const std::lock_guard lock(mMutex);
            mQueue.push_back(std::move(work));
        }
        const uint64_t one = 1;
        if (write(mWake, &one, sizeof(one)) != sizeof(one)) {
            std::perror("eventfd");
        }
    }

  private:
    [[noreturn]] void run() {
        while (true) {
            epoll_event event{};
            uint64_t count = 0;
            if (epoll_wait(mEpoll, &event, 1, -1) == 1 &&
                read(mWake, &count, sizeof(count)) == sizeof(count)) {
                handleAll();
            }
        }
    }

    void handleAll() {
        std::unique_lock lock(mMutex);
        while (!mQueue.empty()) {
            const std::function<void()> work = std::move(mQueue.front());
            mQueue.pop_front();
            lock.unlock();
            work();
            lock.lock();
        }
    }

    const int mEpoll = epoll_create1(EPOLL_CLOEXEC);
    const int mWake = eventfd(0, EFD_NONBLOCK | EFD_CLOEXEC);
    std::mutex mMutex;  // guards the queue
    std::deque<std::function<void()>> mQueue;
};

int measure() {
    // Where the scheduler wakes the other thread would decide the comparison.
    bench::useOneProcessor();
    Handled handled;
    static BareLoop bare;
    const int error = kelvo::startWorkThread(runLoop);
    if (error != 0) {
        std::fprintf(stderr, "message_bench: no thread: error %d\n", error);
        return 1;
    }
    const bool good = bench::keepsBudget({"message posted to handled", "bare hand-over", kBudget,
                                          [&] { return postMessage(handled); },
                                          [&] {
                                              bare.post([&] { handled.post(); });
                                              return handled.wait();
                                          }});
    std::fflush(stdout);
    _exit(good ? 0 : 1);  // both loops run for ever
}

}  // namespace

int main(int, char** argv) {
    if (!sim::runsBelowOwnRoot()) {
        return sim::runBelowOwnRoot(argv, [](sim::DeviceTree& tree) {
            tree.setProperty("persist.sys.kelvo.loglevel", "-1");
        });
    }
    kelvo::connectEngines();
    return measure();
}
