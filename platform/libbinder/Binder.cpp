#include <binder/Binder.h>

#include <binder/BpBinder.h>
#include <binder/IInterface.h>
#include <binder/Parcel.h>
#include <unistd.h>
#include <utils/misc.h>

#include <memory>

namespace android {

IBinder::IBinder() = default;

IBinder::~IBinder() = default;

sp<IInterface> IBinder::queryLocalInterface(const String16&) {
    return nullptr;
}

bool IBinder::checkSubclass(const void*) const {
    return false;
}

BBinder* IBinder::localBinder() {
    return nullptr;
}

BpBinder* IBinder::remoteBinder() {
    return nullptr;
}

status_t IBinder::getExtension(sp<IBinder>* out) {
    Parcel data;
    Parcel reply;
    const status_t status = transact(EXTENSION_TRANSACTION, data, &reply);
    return status != OK ? status : reply.readNullableStrongBinder(out);
}

IInterface::IInterface() = default;

IInterface::~IInterface() = default;

sp<IBinder> IInterface::asBinder(const IInterface* interface) {
    return interface == nullptr ? nullptr : const_cast<IInterface*>(interface)->onAsBinder();
}

sp<IBinder> IInterface::asBinder(const sp<IInterface>& interface) {
    return asBinder(interface.get());
}

/** What few binders need, made when it is first asked for. */
class BBinder::Extras {
  public:
    sp<IBinder> mExtension;  // set before other threads see the binder

    Mutex mLock;  // guards mObjects; the innermost lock, nothing is called while it is held
    BpBinder::ObjectManager mObjects GUARDED_BY(mLock);
};

BBinder::BBinder() : mExtras(nullptr), mReserved0(nullptr) {}

BBinder::~BBinder() {
    delete mExtras.load(std::memory_order_relaxed);
}

BBinder::Extras* BBinder::getOrCreateExtras() {
    Extras* existing = mExtras.load(std::memory_order_acquire);
    if (existing != nullptr) {
        return existing;
    }
    auto created = std::make_unique<Extras>();
    // Of two threads that create them at once, the slower takes those of the other.
    if (!mExtras.compare_exchange_strong(existing, created.get(), std::memory_order_acq_rel,
                                         std::memory_order_acquire)) {
        return existing;
    }
    return created.release();
}

const String16& BBinder::getInterfaceDescriptor() const {
    static const String16 kNone;
    return kNone;
}

bool BBinder::isBinderAlive() const {
    return true;
}

status_t BBinder::pingBinder() {
    return OK;
}

status_t BBinder::dump(int, const Vector<String16>&) {
    return OK;
}

BBinder* BBinder::localBinder() {
    return this;
}

pid_t BBinder::getDebugPid() {
    return getpid();
}

// A local binder cannot die while its process lives.
status_t BBinder::linkToDeath(const sp<DeathRecipient>&, void*, uint32_t) {
    return INVALID_OPERATION;
}

status_t BBinder::unlinkToDeath(const wp<DeathRecipient>&, void*, uint32_t, wp<DeathRecipient>*) {
    return INVALID_OPERATION;
}

void BBinder::attachObject(const void* objectID, void* object, void* cleanupCookie,
                           object_cleanup_func func) {
    Extras* extras = getOrCreateExtras();
    AutoMutex lock(extras->mLock);
    extras->mObjects.attach(objectID, object, cleanupCookie, func);
}

void* BBinder::findObject(const void* objectID) const {
    Extras* extras = mExtras.load(std::memory_order_acquire);
    if (extras == nullptr) {
        return nullptr;
    }
    AutoMutex lock(extras->mLock);
    return extras->mObjects.find(objectID);
}

void BBinder::detachObject(const void* objectID) {
    Extras* extras = mExtras.load(std::memory_order_acquire);
    if (extras != nullptr) {
        AutoMutex lock(extras->mLock);
        extras->mObjects.detach(objectID);
    }
}

sp<IBinder> BBinder::getExtension() {
    const Extras* extras = mExtras.load(std::memory_order_acquire);
    return extras != nullptr ? extras->mExtension : nullptr;
}

void BBinder::setExtension(const sp<IBinder>& extension) {
    getOrCreateExtras()->mExtension = extension;
}

status_t BBinder::transact(uint32_t code, const Parcel& data, Parcel* reply, uint32_t flags) {
    data.setDataPosition(0);
    status_t status;
    switch (code) {
        case PING_TRANSACTION:
            status = pingBinder();
            break;
        case EXTENSION_TRANSACTION:
            status = reply != nullptr ? reply->writeStrongBinder(getExtension()) : BAD_VALUE;
            break;
        case DEBUG_PID_TRANSACTION:
            status = reply != nullptr ? reply->writeInt32(getDebugPid()) : BAD_VALUE;
            break;
        default:
            status = onTransact(code, data, reply, flags);
            break;
    }
    if (reply != nullptr) {
        reply->setDataPosition(0);
    }
    return status;
}

namespace {

/** Arguments of a dump; a count beyond the parcel's end gives those that are there. */
Vector<String16> readArguments(const Parcel& data) {
    Vector<String16> arguments;
    for (int32_t left = data.readInt32(); left > 0 && data.dataAvail() > 0; --left) {
        String16 argument;
        if (data.readString16(&argument) != OK) {
            break;
        }
        arguments.add(argument);
    }
    return arguments;
}

}  // namespace

status_t BBinder::onTransact(uint32_t code, const Parcel& data, Parcel* reply, uint32_t) {
    switch (code) {
        case INTERFACE_TRANSACTION:
            return reply != nullptr ? reply->writeString16(getInterfaceDescriptor()) : BAD_VALUE;
        case DUMP_TRANSACTION: {
            // Without a descriptor it is negative: a dump to nowhere, which is no error.
            const int fd = data.readFileDescriptor();
            return dump(fd, readArguments(data));
        }
        case SYSPROPS_TRANSACTION:
            report_sysprop_change();
            return OK;
        default:
            return UNKNOWN_TRANSACTION;
    }
}

}  // namespace android
