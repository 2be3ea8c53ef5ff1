// What can be asked of a binder.

#include <android/binder_ibinder.h>
#include <binder/IPCThreadState.h>
#include <binder/Parcel.h>
#include <log/log.h>

#include <memory>

#include "BinderClass.h"
#include "NdkBinder.h"
#include "NdkParcel.h"
#include "StatusCodes.h"

using android::IPCThreadState;
using android::sp;
using android::String16;

bool AIBinder_isRemote(const AIBinder* binder) {
    return binder != nullptr &&
           const_cast<AIBinder*>(binder)->getBinder()->remoteBinder() != nullptr;
}

bool AIBinder_isAlive(const AIBinder* binder) {
    return binder != nullptr && const_cast<AIBinder*>(binder)->getBinder()->isBinderAlive();
}

binder_status_t AIBinder_dump(AIBinder* binder, int fd, const char** args, uint32_t numArgs) {
    if (binder == nullptr || (args == nullptr && numArgs > 0)) {
        return STATUS_UNEXPECTED_NULL;
    }
    android::Vector<String16> texts;
    for (uint32_t i = 0; i < numArgs; ++i) {
        texts.push_back(String16(args[i]));
    }
    return statusToPass(binder->getBinder()->dump(fd, texts));
}

pid_t AIBinder_getCallingPid() {
    return IPCThreadState::self()->getCallingPid();
}

bool AIBinder_isHandlingTransaction() {
    return IPCThreadState::self()->getServingStackPointer() != nullptr;
}

bool AIBinder_associateClass(AIBinder* binder, const AIBinder_Class* clazz) {
    return binder != nullptr && binder->associateClass(clazz);
}

void* AIBinder_getUserData(AIBinder* binder) {
    LocalNdkBinder* local = binder != nullptr ? binder->asLocal() : nullptr;
    return local != nullptr ? local->userData() : nullptr;
}

binder_status_t AIBinder_getExtension(AIBinder* binder, AIBinder** outExt) {
    if (binder == nullptr || outExt == nullptr) {
        return STATUS_UNEXPECTED_NULL;
    }
    *outExt = nullptr;
    sp<android::IBinder> extension;
    const android::status_t status = binder->getBinder()->getExtension(&extension);
    if (status == android::OK) {
        *outExt = giveOut(ndkBinderOf(extension));
    }
    return statusToPass(status);
}

binder_status_t AIBinder_setExtension(AIBinder* binder, AIBinder* ext) {
    if (binder == nullptr || ext == nullptr) {
        return STATUS_UNEXPECTED_NULL;
    }
    LocalNdkBinder* local = binder->asLocal();
    if (local == nullptr) {
        return STATUS_INVALID_OPERATION;
    }
    local->setExtension(ext->getBinder());
    return STATUS_OK;
}

binder_status_t AIBinder_prepareTransaction(AIBinder* binder, AParcel** in) {
    if (binder == nullptr || in == nullptr) {
        return STATUS_UNEXPECTED_NULL;
    }
    *in = nullptr;
    const AIBinder_Class* clazz = binder->getClass();
    if (clazz == nullptr) {
        ALOGE("a binder cannot be called before it has a class");
        return STATUS_INVALID_OPERATION;
    }
    auto parcel = std::make_unique<AParcel>(binder);
    const android::status_t status = parcel->get()->writeInterfaceToken(clazz->wideDescriptor);
    if (status == android::OK) {
        *in = parcel.release();
    }
    return statusToPass(status);
}

namespace {

binder_status_t checkCall(AIBinder* binder, transaction_code_t code, const AParcel* in,
                          binder_flags_t flags) {
    if (binder == nullptr || in == nullptr) {
        return STATUS_UNEXPECTED_NULL;
    }
    if (in->target() != binder) {
        ALOGE("a request was prepared for another binder than it is sent to");
        return STATUS_BAD_VALUE;
    }
    if (code < FIRST_CALL_TRANSACTION || code > LAST_CALL_TRANSACTION) {
        return STATUS_UNKNOWN_TRANSACTION;
    }
    return (flags & ~binder_flags_t{FLAG_ONEWAY}) != 0 ? STATUS_BAD_VALUE : STATUS_OK;
}

}  // namespace

binder_status_t AIBinder_transact(AIBinder* binder, transaction_code_t code, AParcel** in,
                                  AParcel** out, binder_flags_t flags) {
    if (in == nullptr) {
        return STATUS_UNEXPECTED_NULL;
    }
    const std::unique_ptr<AParcel> request(*in);
    *in = nullptr;
    if (out == nullptr) {
        return STATUS_UNEXPECTED_NULL;
    }
    *out = nullptr;
    const binder_status_t refusal = checkCall(binder, code, request.get(), flags);
    if (refusal != STATUS_OK) {
        return refusal;
    }
    auto reply = std::make_unique<AParcel>(binder);
    const android::status_t status =
            binder->getBinder()->transact(code, *request->get(), reply->get(), flags);
    if (status == android::OK) {
        *out = reply.release();
    }
    return statusToPass(status);
}
