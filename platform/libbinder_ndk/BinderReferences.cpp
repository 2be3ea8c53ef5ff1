// Strong and weak references to binders, and their order.

#include <android/binder_ibinder.h>
#include <android/binder_libbinder.h>
#include <android/binder_stability.h>
#include <binder/Stability.h>

#include <functional>

#include "BinderClass.h"
#include "NdkBinder.h"

using android::sp;
using android::wp;

struct AIBinder_Weak {
    wp<AIBinder> binder;
};

namespace {

// Who holds a reference given out by this API.
const void* const kHolder = nullptr;

}  // namespace

AIBinder* AIBinder_new(const AIBinder_Class* clazz, void* args) {
    if (clazz == nullptr) {
        return nullptr;
    }
    return giveOut(new LocalNdkBinder(clazz, clazz->onCreate(args)));
}

void AIBinder_incStrong(AIBinder* binder) {
    if (binder != nullptr) {
        binder->incStrong(kHolder);
    }
}

void AIBinder_decStrong(AIBinder* binder) {
    if (binder != nullptr) {
        binder->decStrong(kHolder);
    }
}

AIBinder_Weak* AIBinder_Weak_new(AIBinder* binder) {
    return binder != nullptr ? new AIBinder_Weak{binder} : nullptr;
}

void AIBinder_Weak_delete(AIBinder_Weak* weakBinder) {
    delete weakBinder;
}

AIBinder* AIBinder_Weak_promote(AIBinder_Weak* weakBinder) {
    return weakBinder != nullptr ? giveOut(weakBinder->binder.promote()) : nullptr;
}

bool AIBinder_lt(const AIBinder* lhs, const AIBinder* rhs) {
    return std::less<>()(lhs, rhs);
}

sp<android::IBinder> AIBinder_toPlatformBinder(AIBinder* binder) {
    return binder != nullptr ? binder->getBinder() : nullptr;
}

AIBinder* AIBinder_fromPlatformBinder(const sp<android::IBinder>& binder) {
    return giveOut(ndkBinderOf(binder));
}

void AIBinder_markVintfStability(AIBinder* binder) {
    android::internal::Stability::markVintf(binder->getBinder().get());
}
