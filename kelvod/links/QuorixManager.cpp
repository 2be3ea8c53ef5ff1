#include "links/QuorixManager.h"

#include <binder/IServiceManager.h>

#include <string>
#include <utility>

#include "base/Log.h"
#include "links/QuorixModuleUsageCb.h"

ANDROID_SINGLETON_STATIC_INSTANCE(kelvo::QuorixManager)

namespace kelvo {

using android::IBinder;
using android::Mutex;
using android::sp;
using android::String16;
using android::binder::Status;

namespace {

constexpr char kServiceName[] = "quorix";
constexpr int32_t kListenerKind = 2;  // what the engine expects of this daemon

}  // namespace

/** Tells the manager of the engine's death. */
class QuorixManager::DeathNotifier : public IBinder::DeathRecipient {
  public:
    explicit DeathNotifier(QuorixManager& manager) : mManager(manager) {}
    void binderDied(const android::wp<IBinder>&) override { mManager.dropEngine(); }

  private:
    QuorixManager& mManager;  // never destroyed
};

QuorixManager::QuorixManager() : mDeathNotifier(new DeathNotifier(*this)) {}
QuorixManager::~QuorixManager() = default;

bool QuorixManager::getQuorixService() {
    return mCaller.ask(false, [this] { return connection() != nullptr; });
}

sp<IZentaQuorix> QuorixManager::heldEngine() {
    const Mutex::Autolock lock(mMutex);
    return mQuorix;
}

/** Within a call of mCaller: one at a time, and without the mutex. */
sp<IZentaQuorix> QuorixManager::connection() {
    if (const sp<IZentaQuorix> held = heldEngine(); held != nullptr) {
        return held;
    }
    const sp<android::IServiceManager> services = android::defaultServiceManager();
    if (services == nullptr) {
        KLOGE("qxManager: defaultServiceManager get failed");
        return nullptr;
    }
    // Not getService(), which would wait seconds for an engine that is not there.
    const sp<IBinder> binder = services->checkService(String16(kServiceName));
    const sp<IZentaQuorix> engine = android::interface_cast<IZentaQuorix>(binder);
    holdEngine(engine);  // before the link, so that a death at once finds it
    // One that is dead already would never be dropped.
    if (binder == nullptr || binder->linkToDeath(mDeathNotifier) == android::DEAD_OBJECT) {
        holdEngine(nullptr);
        KLOGD("qxManager: Quorix service get fail!");
        return nullptr;
    }
    if (engine == nullptr) {
        KLOGE("qxManager: Quorix service interface_cast failed");
    }
    return engine;
}

void QuorixManager::holdEngine(sp<IZentaQuorix> engine) {
    const Mutex::Autolock lock(mMutex);
    std::swap(mQuorix, engine);  // the one that was held is released after the lock
}

sp<QuorixModuleUsageCb> QuorixManager::callback() {
    const Mutex::Autolock lock(mMutex);
    if (mCallback == nullptr) {
        mCallback = new QuorixModuleUsageCb(mMutex, mPower);
    }
    return mCallback;
}

void QuorixManager::regCallBack() {
    {
        const Mutex::Autolock lock(mMutex);
        if (mRegistered) {
            KLOGD("qxManager callback has been registered");
            return;
        }
    }
    registerQuorixCallback();
}

int QuorixManager::registerQuorixCallback() {
    const sp<QuorixModuleUsageCb> listener = callback();
    const Reply reply = tell([this, listener](const sp<IZentaQuorix>& engine) {
        int32_t result = 0;
        const Status status = engine->registerModuleUsageListener(kListenerKind, listener, &result);
        if (status.isOk()) {
            setRegistered(engine);
        }
        return status.isOk();
    });
    if (reply == Reply::ABSENT) {
        KLOGE("qxManager: registerQuorixCallback getQuorixService fail");
    } else if (reply == Reply::REFUSED) {
        KLOGE("qxManager: registerModuleUsageListener fail");
    } else {
        KLOGD("qxManager: registerModuleUsageListener ok");
    }
    return reply == Reply::GOOD ? 0 : -1;
}

QuorixManager::Reply QuorixManager::tell(std::function<bool(const sp<IZentaQuorix>& engine)> call) {
    return mCaller.ask(Reply::ABSENT, [this, call = std::move(call)] {
        const sp<IZentaQuorix> engine = connection();
        if (engine == nullptr) {
            return Reply::ABSENT;
        }
        return call(engine) ? Reply::GOOD : Reply::REFUSED;
    });
}

QuorixManager::Reply QuorixManager::inform(int32_t event) {
    return tell([event](const sp<IZentaQuorix>& engine) {
        int32_t result = 0;
        return engine->informThermalEvent(event, &result).isOk();
    });
}

/** An engine that died meanwhile has forgotten the registration. */
void QuorixManager::setRegistered(const sp<IZentaQuorix>& engine) {
    const Mutex::Autolock lock(mMutex);
    mRegistered = mQuorix == engine;
}

int QuorixManager::startQuorix() {
    const Reply reply = inform(IZentaQuorix::START_REPORTING);
    if (reply == Reply::ABSENT) {
        KLOGE("qxManager: startQuorix getQuorixService fail");
    } else if (reply == Reply::REFUSED) {
        KLOGE("qxManager: informThermalEvent startQuorix fail");
    } else {
        KLOGE("qxManager: informThermalEvent startQuorix ok");
    }
    return reply == Reply::GOOD ? 0 : -1;
}

int QuorixManager::stopQuorix() {
    const Reply reply = inform(IZentaQuorix::STOP_REPORTING);
    if (reply == Reply::ABSENT) {
        KLOGE("qxManager: stopQuorix getQuorixService fail");
    } else if (reply == Reply::REFUSED) {
        KLOGE("qxManager: informThermalEvent stopQuorix fail");
    } else {
        KLOGE("qxManager: informThermalEvent stopQuorix ok");
    }
    return reply == Reply::GOOD ? 0 : -1;
}

void QuorixManager::dropEngine() {
    const Mutex::Autolock lock(mMutex);
    KLOGE("qxManager Quorix server died!");
    mQuorix = nullptr;
    mRegistered = false;
}

}  // namespace kelvo
