#include <binder/BpBinder.h>

#include <binder/IPCThreadState.h>
#include <binder/Parcel.h>
#include <binder/Stability.h>
#include <log/log.h>

#include <memory>

namespace android {

namespace {

// In place of a uid: proxies are not counted by who gave them.
constexpr int32_t kUncounted = -1;

int32_t load(const volatile int32_t& flag) {
    return __atomic_load_n(&flag, __ATOMIC_RELAXED);
}

void store(volatile int32_t& flag, int32_t value) {
    __atomic_store_n(&flag, value, __ATOMIC_RELAXED);
}

}  // namespace

BpBinder* BpBinder::create(int32_t handle) {
    return new BpBinder(handle, kUncounted);
}

BpBinder::BpBinder(int32_t handle, int32_t trackedUid)
      : mHandle(handle),
        mAlive(1),
        mObitsSent(0),
        mObituaries(nullptr),
        mConstantData(nullptr),
        mTrackedUid(trackedUid) {
    // Lives as long as anyone remembers it, so that a handle has the same proxy for all that time.
    extendObjectLifetime(OBJECT_LIFETIME_WEAK);
    IPCThreadState::self()->incWeakHandle(handle, this);
}

BpBinder::~BpBinder() {
    IPCThreadState::expungeHandle(mHandle, this);
    IPCThreadState::self()->decWeakHandle(mHandle);
}

int32_t BpBinder::handle() const {
    return mHandle;
}

BpBinder* BpBinder::remoteBinder() {
    return this;
}

bool BpBinder::isDescriptorCached() const {
    AutoMutex lock(mLock);
    return mDescriptorCache.size() > 0;
}

const String16& BpBinder::getInterfaceDescriptor() const {
    static const String16 kNone;
    if (isDescriptorCached()) {
        return mDescriptorCache;
    }
    const Parcel data;
    Parcel reply;
    String16 descriptor;
    const status_t status =
            const_cast<BpBinder*>(this)->transact(INTERFACE_TRANSACTION, data, &reply);
    if (status != OK || reply.readString16(&descriptor) != OK || descriptor.size() == 0) {
        return kNone;
    }
    AutoMutex lock(mLock);
    // Once set it stays: others hold references to it without the lock.
    if (mDescriptorCache.size() == 0) {
        mDescriptorCache = descriptor;
    }
    return mDescriptorCache;
}

bool BpBinder::isBinderAlive() const {
    return load(mAlive) != 0;
}

status_t BpBinder::pingBinder() {
    const Parcel data;
    Parcel reply;
    return transact(PING_TRANSACTION, data, &reply);
}

status_t BpBinder::dump(int fd, const Vector<String16>& args) {
    Parcel data;
    Parcel reply;
    data.writeFileDescriptor(fd);
    data.writeInt32(static_cast<int32_t>(args.size()));
    for (const String16& argument : args) {
        data.writeString16(argument);
    }
    return transact(DUMP_TRANSACTION, data, &reply);
}

status_t BpBinder::transact(uint32_t code, const Parcel& data, Parcel* reply, uint32_t flags) {
    // Who has died never comes back to life.
    if (load(mAlive) == 0) {
        return DEAD_OBJECT;
    }
    using internal::Stability;
    if (code >= FIRST_CALL_TRANSACTION && code <= LAST_CALL_TRANSACTION) {
        const Stability::Level required =
                (flags & FLAG_PRIVATE_VENDOR) != 0 ? Stability::VENDOR : Stability::kLocalStability;
        const Stability::Level level = Stability::get(this);
        if (!Stability::check(level, required)) {
            ALOGE("a binder of %s is no target for calls that need %s",
                  Stability::stabilityString(level).c_str(),
                  Stability::stabilityString(required).c_str());
            return BAD_TYPE;
        }
    }
    const uint32_t driverFlags = flags & ~static_cast<uint32_t>(FLAG_PRIVATE_VENDOR);
    const status_t status =
            IPCThreadState::self()->transact(mHandle, code, data, reply, driverFlags);
    // As on Android, also when it is the service itself that answers so: it must not hand on that
    // somebody whom it called is dead.
    if (status == DEAD_OBJECT) {
        store(mAlive, 0);
    }
    return status;
}

status_t BpBinder::linkToDeath(const sp<DeathRecipient>& recipient, void* cookie, uint32_t flags) {
    LOG_ALWAYS_FATAL_IF(recipient == nullptr, "a death notice needs a recipient");
    AutoMutex lock(mLock);
    if (mObitsSent != 0) {
        return DEAD_OBJECT;
    }
    if (mObituaries == nullptr) {
        mObituaries = new Vector<Obituary>;
        // The driver knows the proxy by its address until it has confirmed that it forgot it.
        getWeakRefs()->incWeak(this);
        IPCThreadState* thread = IPCThreadState::self();
        thread->requestDeathNotification(mHandle, this);
        thread->flushCommands();
    }
    const ssize_t added = mObituaries->add({recipient, cookie, flags});
    return added < 0 ? static_cast<status_t>(added) : OK;
}

status_t BpBinder::unlinkToDeath(const wp<DeathRecipient>& recipient, void* cookie, uint32_t flags,
                                 wp<DeathRecipient>* outRecipient) {
    wp<DeathRecipient> removed;  // forgotten without the lock
    AutoMutex lock(mLock);
    if (mObitsSent != 0) {
        return DEAD_OBJECT;
    }
    for (size_t i = 0; mObituaries != nullptr && i < mObituaries->size(); ++i) {
        const Obituary& obituary = mObituaries->itemAt(i);
        const bool isMeant = obituary.recipient == recipient ||
                             (recipient == nullptr && obituary.cookie == cookie);
        if (!isMeant || obituary.flags != flags) {
            continue;
        }
        removed = obituary.recipient;
        if (outRecipient != nullptr) {
            *outRecipient = removed;
        }
        mObituaries->removeAt(i);
        if (mObituaries->isEmpty()) {
            IPCThreadState* thread = IPCThreadState::self();
            thread->clearDeathNotification(mHandle, this);
            thread->flushCommands();
            delete mObituaries;
            mObituaries = nullptr;
        }
        return OK;
    }
    return NAME_NOT_FOUND;
}

void BpBinder::sendObituary() {
    store(mAlive, 0);
    std::unique_ptr<Vector<Obituary>> obituaries;
    {
        AutoMutex lock(mLock);
        if (mObitsSent != 0) {
            return;
        }
        obituaries.reset(mObituaries);
        mObituaries = nullptr;
        store(mObitsSent, 1);
    }
    if (obituaries == nullptr) {
        return;
    }
    IPCThreadState* thread = IPCThreadState::self();
    thread->clearDeathNotification(mHandle, this);
    thread->flushCommands();
    for (const Obituary& obituary : *obituaries) {
        reportOneDeath(obituary);
    }
}

void BpBinder::reportOneDeath(const Obituary& obit) {
    const sp<DeathRecipient> recipient = obit.recipient.promote();
    if (recipient != nullptr) {
        recipient->binderDied(wp<IBinder>(this));
    }
}

void BpBinder::attachObject(const void* objectID, void* object, void* cleanupCookie,
                            object_cleanup_func func) {
    AutoMutex lock(mLock);
    mObjects.attach(objectID, object, cleanupCookie, func);
}

void* BpBinder::findObject(const void* objectID) const {
    AutoMutex lock(mLock);
    return mObjects.find(objectID);
}

void BpBinder::detachObject(const void* objectID) {
    AutoMutex lock(mLock);
    mObjects.detach(objectID);
}

void BpBinder::onFirstRef() {
    IPCThreadState::self()->incStrongHandle(mHandle, this);
}

void BpBinder::onLastStrongRef(const void*) {
    std::unique_ptr<Vector<Obituary>> obituaries;
    {
        AutoMutex lock(mLock);
        obituaries.reset(mObituaries);
        mObituaries = nullptr;
    }
    IPCThreadState* thread = IPCThreadState::self();
    if (obituaries != nullptr) {
        thread->clearDeathNotification(mHandle, this);
    }
    thread->decStrongHandle(mHandle);
}

/** A proxy that nobody held is not revived: the driver cannot say whether its binder still lives.
 */
bool BpBinder::onIncStrongAttempted(uint32_t, const void*) {
    return IPCThreadState::self()->attemptIncStrongHandle(mHandle) == OK;
}

}  // namespace android
