// Processes with listeners, see KelvodTest.h.

#include <binder/IServiceManager.h>
#include <binder/ProcessState.h>

#include <algorithm>
#include <condition_variable>
#include <mutex>

#include "KelvodTest.h"
#include "client/StatusListener.h"

namespace {

using android::sp;
using client::StatusListener;

/** What the listeners of this process are told. Thread-safe. */
class Ears {
  public:
    Ears(size_t count, RoleLink& link) : mHeard(count), mLink(link) {}

    void hear(size_t listener, const std::string& event,
              const client::ListenerCall::Members& members) {
        std::string call = event.substr(event.rfind('_') + 1);
        for (const auto& [name, value] : members) {
            call += " " + (value.isObject() ? "{}" : value.asString());
        }
        std::unique_lock lock(mMutex);
        std::string& heard = mHeard[listener];
        heard += (heard.empty() ? "" : ",") + call;
        mChanged.notify_all();
        if (mSticks) {
            mLink.send("stuck");
            mChanged.wait(lock, [] { return false; });
        }
    }
    std::string heard() {
        const std::lock_guard lock(mMutex);
        const std::string& first = mHeard.front();
        const bool agree = std::ranges::count(mHeard, first) == std::ssize(mHeard);
        return agree ? first : "they differ";
    }
    void waitFor(const std::string& text) {
        std::unique_lock lock(mMutex);
        const auto holdsIt = [&](const std::string& heard) {
            return heard.find(text) != heard.npos;
        };
        mChanged.wait(lock, [&] { return std::ranges::all_of(mHeard, holdsIt); });
    }
    void forget() {
        const std::lock_guard lock(mMutex);
        mHeard.assign(mHeard.size(), "");
    }
    void stick() {
        const std::lock_guard lock(mMutex);
        mSticks = true;
    }

  private:
    std::mutex mMutex;  // guards what follows
    std::condition_variable mChanged;
    std::vector<std::string> mHeard;  // by listener
    bool mSticks = false;
    RoleLink& mLink;
};

/** False when the daemon did not take it. */
bool registerListener(Ears& ears, size_t number) {
    KelvodRequest request;
    android::Parcel reply;
    const sp<android::IBinder> listener =
            new StatusListener([&ears, number](const std::string& event,
                                               const client::ListenerCall::Members& members) {
                ears.hear(number, event, members);
            });
    request.writeStrongBinder(listener);
    return kelvodService()->transact(kelvo::REGISTER_CLIENT, request, &reply) == android::OK &&
           reply.readInt32() == 1;
}

int listen(RoleLink& link) {
    const size_t count = std::stoul(link.argument());
    Ears ears(count, link);
    android::ProcessState::self()->startThreadPool();
    for (size_t i = 0; i < count; ++i) {
        if (!registerListener(ears, i)) {
            return 1;
        }
    }
    ears.waitFor("broadcast");  // the last that a new listener is told
    link.send("ready");
    constexpr std::string_view kUntil = "until ";
    // For as long as the test takes: it ends this process.
    for (std::string text = link.receive(-1); !text.empty(); text = link.receive(-1)) {
        if (text == "heard") {
            link.send(ears.heard());
        } else if (text == "forget") {
            ears.forget();
            link.send("forgotten");
        } else if (text == "stick") {
            ears.stick();
            link.send("sticks");
        } else if (text.starts_with(kUntil)) {
            ears.waitFor(text.substr(kUntil.size()));
            link.send("seen");
        }
    }
    return 0;
}

const Role kListen(kListenRole, listen);

}  // namespace
