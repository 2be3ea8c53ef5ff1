#include <binder/Binder.h>

namespace android {

namespace {

// Set in mState while strong references to the proxy object exist.
constexpr int32_t kRemoteAcquired = 1;

}  // namespace

// A proxy object lives as long as anyone remembers it, also weakly; the binder behind it is held
// from the first to the last strong reference.
BpRefBase::BpRefBase(const sp<IBinder>& o) : mRemote(o.get()), mRefs(nullptr), mState(0) {
    extendObjectLifetime(OBJECT_LIFETIME_WEAK);
    if (mRemote != nullptr) {
        mRemote->incStrong(this);
        mRefs = mRemote->createWeak(this);
    }
}

BpRefBase::~BpRefBase() {
    if (mRemote != nullptr) {
        if ((mState.load(std::memory_order_relaxed) & kRemoteAcquired) == 0) {
            mRemote->decStrong(this);
        }
        mRefs->decWeak(this);
    }
}

void BpRefBase::onFirstRef() {
    mState.fetch_or(kRemoteAcquired, std::memory_order_relaxed);
}

void BpRefBase::onLastStrongRef(const void*) {
    if (mRemote != nullptr) {
        mRemote->decStrong(this);
    }
}

bool BpRefBase::onIncStrongAttempted(uint32_t, const void*) {
    return mRemote != nullptr && mRefs->attemptIncStrong(this);
}

}  // namespace android
