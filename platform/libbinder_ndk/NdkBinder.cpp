#include "NdkBinder.h"

#include <binder/Parcel.h>
#include <log/log.h>
#include <utils/String8.h>

#include <string>
#include <vector>

#include "BinderClass.h"
#include "NdkParcel.h"
#include "StatusCodes.h"

using android::AutoMutex;
using android::IBinder;
using android::sp;
using android::String16;
using android::String8;

namespace {

// Known to no other kind of binder, so checkSubclass tells ours.
constexpr char kLocalId = 0;

bool isUserCode(uint32_t code) {
    return code >= FIRST_CALL_TRANSACTION && code <= LAST_CALL_TRANSACTION;
}

bool hasDescriptor(const sp<IBinder>& binder, const AIBinder_Class& clazz) {
    const String16 descriptor = binder->getInterfaceDescriptor();  // asks the other process
    if (descriptor == clazz.wideDescriptor) {
        return true;
    }
    if (binder->isBinderAlive()) {
        ALOGE("a binder of interface '%s' was taken for one of %s", String8(descriptor).string(),
              clazz.descriptor.c_str());
    } else {
        ALOGW("a binder died before it could become one of %s", clazz.descriptor.c_str());
    }
    return false;
}

}  // namespace

AIBinder::AIBinder(const AIBinder_Class* clazz) : mClass(clazz) {}

const AIBinder_Class* AIBinder::getClass() const {
    AutoMutex lock(mClassLock);
    return mClass;
}

bool AIBinder::refuseOtherClass(const AIBinder_Class& wanted, const AIBinder_Class& present) const {
    ALOGE("a binder of class %s cannot become one of %s%s", present.descriptor.c_str(),
          wanted.descriptor.c_str(),
          wanted.descriptor == present.descriptor ? ", another class of that name" : "");
    return false;
}

bool AIBinder::associateClass(const AIBinder_Class* clazz) {
    if (clazz == nullptr) {
        return false;
    }
    if (const AIBinder_Class* present = getClass(); present != nullptr) {
        return present == clazz || refuseOtherClass(*clazz, *present);
    }
    if (!hasDescriptor(getBinder(), *clazz)) {
        return false;
    }
    const AIBinder_Class* present;
    {
        AutoMutex lock(mClassLock);
        present = mClass = mClass == nullptr ? clazz : mClass;
    }
    return present == clazz || refuseOtherClass(*clazz, *present);
}

LocalNdkBinder::LocalNdkBinder(const AIBinder_Class* clazz, void* userData)
      : AIBinder(clazz), mUserData(userData) {}

LocalNdkBinder::~LocalNdkBinder() {
    getClass()->onDestroy(mUserData);
}

LocalNdkBinder* LocalNdkBinder::from(const sp<IBinder>& binder) {
    return binder->checkSubclass(&kLocalId) ? static_cast<LocalNdkBinder*>(binder->localBinder())
                                            : nullptr;
}

bool LocalNdkBinder::checkSubclass(const void* subclassID) const {
    return subclassID == &kLocalId;
}

const String16& LocalNdkBinder::getInterfaceDescriptor() const {
    return getClass()->wideDescriptor;
}

android::status_t LocalNdkBinder::dump(int fd, const android::Vector<String16>& args) {
    const AIBinder_onDump onDump = getClass()->onDump;
    if (onDump == nullptr) {
        return android::OK;
    }
    std::vector<std::string> texts;
    for (const String16& arg : args) {
        texts.emplace_back(String8(arg).string());
    }
    std::vector<const char*> pointers;
    pointers.reserve(texts.size());
    for (const std::string& text : texts) {
        pointers.push_back(text.c_str());
    }
    return statusToPass(onDump(this, fd, pointers.data(), static_cast<uint32_t>(pointers.size())));
}

android::status_t LocalNdkBinder::onTransact(uint32_t code, const android::Parcel& data,
                                             android::Parcel* reply, uint32_t flags) {
    if (!isUserCode(code)) {
        return BBinder::onTransact(code, data, reply, flags);
    }
    const AIBinder_Class* clazz = getClass();
    if (!data.checkInterface(this)) {
        return STATUS_BAD_TYPE;
    }
    // A method that has results may be called by someone who has no room for them.
    android::Parcel unread;
    const AParcel in(this, const_cast<android::Parcel*>(&data));
    AParcel out(this, reply != nullptr ? reply : &unread);
    return statusToPass(clazz->onTransact(this, code, &in, &out));
}
