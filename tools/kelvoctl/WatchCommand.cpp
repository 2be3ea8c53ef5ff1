#include <binder/ProcessState.h>
#include <unistd.h>

#include <array>
#include <chrono>
#include <condition_variable>
#include <cstdio>
#include <ctime>
#include <exception>
#include <iostream>
#include <mutex>

#include "Commands.h"
#include "KelvoCall.h"
#include "Services.h"
#include "client/StatusListener.h"

namespace kelvoctl {

namespace {

using android::IBinder;
using android::sp;
using android::wp;

struct WatchOptions {
    const Output& output;
    uint64_t count;  // calls to be seen
    bool stamped;    // JSON has the time as well
};

/** Now, in UTC: "2026-03-01T08:05:00.123Z". */
std::string timeText() {
    using std::chrono::system_clock;
    const auto now = std::chrono::floor<std::chrono::milliseconds>(system_clock::now());
    const std::time_t seconds = system_clock::to_time_t(now);
    std::tm utc{};
    gmtime_r(&seconds, &utc);
    std::array<char, 32> date;
    std::strftime(date.data(), date.size(), "%FT%T", &utc);
    std::array<char, 48> text;
    std::snprintf(text.data(), text.size(), "%s.%03dZ", date.data(),
                  static_cast<int>(now.time_since_epoch().count() % 1000));
    return text.data();
}

/** What the binder threads tell the command's own thread. */
class Watch {
  public:
    explicit Watch(const WatchOptions& options)
          : mOutput(options.output), mStamped(options.stamped), mLeft(options.count) {}

    void print(const std::string& event, const client::ListenerCall::Members& members) {
        Output::Members object{{"event", event}};
        object.insert(object.end(), members.begin(), members.end());
        const std::string time = timeText();
        if (mStamped) {
            object.emplace_back("time", time);
        }
        std::string text = time + " " + event;
        for (const auto& [name, value] : members) {
            text += " " + name + " " + compactJson(value);
        }
        const std::lock_guard lock(mMutex);
        if (mLeft == 0) {
            return;
        }
        try {
            mOutput.print(object, text);
            --mLeft;
        } catch (...) {  // for the command's own thread
            mFailure = std::current_exception();
            mLeft = 0;
        }
        mChanged.notify_all();
    }
    void lose() {
        const std::lock_guard lock(mMutex);
        mLost = true;
        mChanged.notify_all();
    }
    /** True when the daemon was lost, false when all calls have been seen. Throws what printing
     * did. */
    bool waitForLoss() {
        std::unique_lock lock(mMutex);
        mChanged.wait(lock, [this] { return mLost || mLeft == 0; });
        mLost = false;
        if (mFailure != nullptr) {
            std::rethrow_exception(mFailure);
        }
        return mLeft != 0;
    }

  private:
    const Output& mOutput;
    const bool mStamped;
    std::mutex mMutex;  // guards what follows, and standard output
    std::condition_variable mChanged;
    uint64_t mLeft;
    bool mLost = false;
    std::exception_ptr mFailure;  // of the print after which nothing is printed
};

class Loss : public IBinder::DeathRecipient {
  public:
    explicit Loss(Watch& watch) : mWatch(watch) {}
    void binderDied(const wp<IBinder>&) override { mWatch.lose(); }

  private:
    Watch& mWatch;
};

/** False when the daemon died meanwhile. */
bool registerWith(const sp<IBinder>& kelvo, const sp<IBinder>& listener, const sp<Loss>& loss) {
    if (kelvo->linkToDeath(loss) != android::OK) {
        return false;
    }
    android::Parcel request;
    android::Parcel reply;
    request.writeInterfaceToken(kelvo->getInterfaceDescriptor());
    request.writeStrongBinder(listener);
    const android::status_t status = kelvo->transact(kelvo::REGISTER_CLIENT, request, &reply);
    if (status != android::DEAD_OBJECT) {
        checkStatus(status, callName(kelvo::REGISTER_CLIENT));
    }
    return status == android::OK;
}

/** Returns when all calls have been seen. */
void follow(Watch& state) {
    sp<IBinder> service = findService(kKelvo);
    android::ProcessState::self()->startThreadPool();
    const sp<IBinder> listener = new client::StatusListener(
            [&state](const std::string& event, const client::ListenerCall::Members& members) {
                state.print(event, members);
            });
    const sp<Loss> loss = new Loss(state);
    while (!registerWith(service, listener, loss) || state.waitForLoss()) {
        std::cerr << "kelvoctl: the daemon has gone, waiting for it to come back: " << kKelvo
                  << std::endl;
        service = serviceManager()->waitForService(toString16(kKelvo));
        if (service == nullptr) {
            throw Failure("the service manager has gone", kKelvo);
        }
        std::cerr << "kelvoctl: the daemon is back, registering again: " << kKelvo << std::endl;
    }
}

/** Ends the program. */
[[noreturn]] void watch(const WatchOptions& options) {
    Watch state(options);
    int status = 0;
    try {
        follow(state);
    } catch (const command_line::ReaderGone&) {
    } catch (const std::exception& error) {
        command_line::complain("kelvoctl", error.what());
        status = command_line::kFailed;
    }
    // Binder threads may still be about to call: nothing that they use is taken away under them.
    _exit(status);
}

}  // namespace

void addWatch(CLI::App& app, Output& output) {
    static uint64_t count = std::numeric_limits<uint64_t>::max();
    static bool stamped = false;
    static const CLI::Validator kCount(
            [](const std::string& text) {
                const bool isNone = text.find_first_not_of('0') == std::string::npos;
                return isNone || text.starts_with('-')
                               ? "expected a number of calls from 1 on, not " + text
                               : std::string();
            },
            "");
    CLI::App* const command = app.add_subcommand("watch", "Show what listeners are told");
    command->add_option("--count", count, "End after so many calls")
            ->type_name("NUMBER")
            ->check(kCount);
    command->add_flag("--time", stamped, "With --json: give each line a last member \"time\"");
    command_line::setExamples(*command,
                              {"kelvoctl watch --count 3", "kelvoctl --json watch --time"});
    command->callback([&] { watch({output, count, stamped}); });
}

}  // namespace kelvoctl
