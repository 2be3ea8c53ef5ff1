#include "links/QuorixManager.h"

#include <binder/IServiceManager.h>

#include <string>

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

QuorixManager::QuorixManager() = default;
QuorixManager::~QuorixManager() = default;

bool QuorixManager::getQuorixService() {
    const Mutex::Autolock lock(mMutex);
    return connectLocked();
}

bool QuorixManager::connectLocked() {
    if (mQuorix != nullptr) {
        return true;
    }
    const sp<android::IServiceManager> services = android::defaultServiceManager();
    if (services == nullptr) {
        KLOGE("qxManager: defaultServiceManager get failed");
        return false;
    }
    // Not getService(), which would wait seconds for an engine that is not there.
    const sp<IBinder> binder = services->checkService(String16(kServiceName));
    if (mDeathNotifier == nullptr) {
        mDeathNotifier = new DeathNotifier(*this);
    }
    // One that is dead already would never be dropped.
    if (binder == nullptr || binder->linkToDeath(mDeathNotifier) == android::DEAD_OBJECT) {
        KLOGD("qxManager: Quorix service get fail!");
        return false;
    }
    mQuorix = android::interface_cast<IZentaQuorix>(binder);
    if (mQuorix == nullptr) {
        KLOGE("qxManager: Quorix service interface_cast failed");
    }
    return mQuorix != nullptr;
}

sp<IZentaQuorix> QuorixManager::connection() {
    const Mutex::Autolock lock(mMutex);
    connectLocked();
    return mQuorix;
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
    const sp<IZentaQuorix> engine = connection();
    if (engine == nullptr) {
        KLOGE("qxManager: registerQuorixCallback getQuorixService fail");
        return -1;
    }
    int32_t result = 0;
    const Status status = engine->registerModuleUsageListener(kListenerKind, listener, &result);
    if (!status.isOk()) {
        KLOGE("qxManager: registerModuleUsageListener fail");
        return -1;
    }
    KLOGD("qxManager: registerModuleUsageListener ok");
    setRegistered(engine);
    return 0;
}

/** An engine that died meanwhile has forgotten the registration. */
void QuorixManager::setRegistered(const sp<IZentaQuorix>& engine) {
    const Mutex::Autolock lock(mMutex);
    mRegistered = mQuorix == engine;
}

int QuorixManager::startQuorix() {
    const sp<IZentaQuorix> engine = connection();
    if (engine == nullptr) {
        KLOGE("qxManager: startQuorix getQuorixService fail");
        return -1;
    }
    int32_t result = 0;
    if (!engine->informThermalEvent(IZentaQuorix::START_REPORTING, &result).isOk()) {
        KLOGE("qxManager: informThermalEvent startQuorix fail");
        return -1;
    }
    KLOGE("qxManager: informThermalEvent startQuorix ok");
    return 0;
}

int QuorixManager::stopQuorix() {
    const sp<IZentaQuorix> engine = connection();
    if (engine == nullptr) {
        KLOGE("qxManager: stopQuorix getQuorixService fail");
        return -1;
    }
    int32_t result = 0;
    if (!engine->informThermalEvent(IZentaQuorix::STOP_REPORTING, &result).isOk()) {
        KLOGE("qxManager: informThermalEvent stopQuorix fail");
        return -1;
    }
    KLOGE("qxManager: informThermalEvent stopQuorix ok");
    return 0;
}

void QuorixManager::dropEngine() {
    const Mutex::Autolock lock(mMutex);
    KLOGE("qxManager Quorix server died!");
    mQuorix = nullptr;
    mRegistered = false;
}

}  // namespace kelvo
