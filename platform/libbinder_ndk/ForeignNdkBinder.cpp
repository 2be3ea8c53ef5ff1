// Which AIBinder stands for a binder that this API did not make.

#include "NdkBinder.h"

using android::AutoMutex;
using android::IBinder;
using android::Mutex;
using android::sp;
using android::wp;

namespace {

/** Attached to a binder, and freed with it: its AIBinder, as long as somebody uses that. */
struct Attachment {
    wp<ForeignNdkBinder> binder;
};

constexpr char kAttachmentId = 0;

// Guards what all attachments hold. Binders' own locks are taken while it is held, it is never
// taken under them. Never destroyed: threads that use binders outlive static objects.
Mutex& attachmentLock() {
    static Mutex* lock = new Mutex;
    return *lock;
}

Attachment* attachmentOfLocked(const sp<IBinder>& binder) {
    auto* attachment = static_cast<Attachment*>(binder->findObject(&kAttachmentId));
    if (attachment == nullptr) {
        attachment = new Attachment;
        binder->attachObject(
                &kAttachmentId, attachment, nullptr,
                [](const void*, void* object, void*) { delete static_cast<Attachment*>(object); });
    }
    return attachment;
}

}  // namespace

ForeignNdkBinder::ForeignNdkBinder(const sp<IBinder>& binder)
      : AIBinder(nullptr), mBinder(binder) {}

sp<AIBinder> ndkBinderOf(const sp<IBinder>& binder) {
    if (binder == nullptr) {
        return nullptr;
    }
    if (LocalNdkBinder* local = LocalNdkBinder::from(binder); local != nullptr) {
        return local;
    }
    AutoMutex lock(attachmentLock());
    Attachment* attachment = attachmentOfLocked(binder);
    sp<ForeignNdkBinder> found = attachment->binder.promote();
    if (found == nullptr) {
        found = new ForeignNdkBinder(binder);
        attachment->binder = found;
    }
    return found;
}

AIBinder* giveOut(const sp<AIBinder>& binder) {
    AIBinder_incStrong(binder.get());
    return binder.get();
}
