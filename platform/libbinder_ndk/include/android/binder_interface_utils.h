#pragma once

#include <android/binder_auto_utils.h>
#include <android/binder_ibinder.h>
#include <utils/Mutex.h>

#include <cstdlib>
#include <memory>
#include <mutex>
#include <utility>

namespace ndk {

/**
 * Base of objects that give shared pointers to themselves. The first of them owns the object, so
 * one must be taken at once: make() does. Thread-safe.
 */
class SharedRefBase {
  public:
    SharedRefBase() = default;
    SharedRefBase(const SharedRefBase&) = delete;
    SharedRefBase& operator=(const SharedRefBase&) = delete;
    virtual ~SharedRefBase() {
        // Deleted by hand while shared: the owners would delete it again.
        if (!mThis.expired()) {
            std::abort();
        }
    }

    std::shared_ptr<SharedRefBase> ref() {
        std::shared_ptr<SharedRefBase> result;
        // The one pointer that is made of `this`; all others are copies of it.
        std::call_once(mOnce, [&] {
            result.reset(this);
            mThis = result;
        });
        return result != nullptr ? result : mThis.lock();
    }

    template <typename CHILD>
    std::shared_ptr<CHILD> ref() {
        return std::static_pointer_cast<CHILD>(ref());
    }

    template <class T, class... Args>
    static std::shared_ptr<T> make(Args&&... args) {
        T* object = new T(std::forward<Args>(args)...);
        return object->template ref<T>();
    }

  private:
    std::once_flag mOnce;
    std::weak_ptr<SharedRefBase> mThis;  // written under mOnce
};

/** Base of the interfaces that the aidl compiler makes. */
class ICInterface : public SharedRefBase {
  public:
    /** The binder that speaks this interface. A local one is made when it is first asked for. */
    virtual SpAIBinder asBinder() = 0;

    virtual bool isRemote() = 0;

    /** Writes text for a person to `fd`; the arguments are those of the person's command. */
    virtual binder_status_t dump(int /*fd*/, const char** /*args*/, uint32_t /*numArgs*/) {
        return STATUS_OK;
    }

    /** The object behind a local binder; null for one that AIBinder_new did not make here. */
    static inline std::shared_ptr<ICInterface> asInterface(AIBinder* binder);

    /** A class whose binders stand for an ICInterface, the argument of AIBinder_new. */
    static inline AIBinder_Class* defineClass(const char* interfaceDescriptor,
                                              AIBinder_Class_onTransact onTransact);

  private:
    /** User data of a local binder: it keeps the object, not the other way round. */
    struct Data {
        std::shared_ptr<ICInterface> interface;

        static ICInterface* of(AIBinder* binder) {
            return static_cast<Data*>(AIBinder_getUserData(binder))->interface.get();
        }
    };

    static void* onCreate(void* args) {
        return new Data{static_cast<ICInterface*>(args)->ref<ICInterface>()};
    }
    static void onDestroy(void* userData) { delete static_cast<Data*>(userData); }
    static binder_status_t onDump(AIBinder* binder, int fd, const char** args, uint32_t numArgs) {
        return Data::of(binder)->dump(fd, args, numArgs);
    }
};

/** Base of the interfaces' local side. Thread-safe. */
template <typename INTERFACE>
class BnCInterface : public INTERFACE {
  public:
    SpAIBinder asBinder() final {
        android::AutoMutex lock(mLock);
        SpAIBinder binder = mBinder.get() != nullptr ? mBinder.promote() : nullptr;
        if (binder == nullptr) {
            binder = createBinder();
            mBinder.set(AIBinder_Weak_new(binder.get()));
        }
        return binder;
    }

    bool isRemote() final { return false; }

  protected:
    /** A new binder of the interface's class with this object. */
    virtual SpAIBinder createBinder() = 0;

  private:
    android::Mutex mLock;  // the class's onCreate is called while it is held
    ScopedAIBinder_Weak mBinder GUARDED_BY(mLock);
};

/** Base of the interfaces' remote side. Thread-safe. */
template <typename INTERFACE>
class BpCInterface : public INTERFACE {
  public:
    explicit BpCInterface(const SpAIBinder& binder) : mBinder(binder) {}

    SpAIBinder asBinder() final { return mBinder; }
    bool isRemote() final { return AIBinder_isRemote(mBinder.get()); }
    binder_status_t dump(int fd, const char** args, uint32_t numArgs) override {
        return AIBinder_dump(mBinder.get(), fd, args, numArgs);
    }

  private:
    const SpAIBinder mBinder;
};

std::shared_ptr<ICInterface> ICInterface::asInterface(AIBinder* binder) {
    auto* data = static_cast<Data*>(AIBinder_getUserData(binder));
    return data != nullptr ? data->interface : nullptr;
}

AIBinder_Class* ICInterface::defineClass(const char* interfaceDescriptor,
                                         AIBinder_Class_onTransact onTransact) {
    AIBinder_Class* clazz =
            AIBinder_Class_define(interfaceDescriptor, onCreate, onDestroy, onTransact);
    if (clazz != nullptr) {
        AIBinder_Class_setOnDump(clazz, onDump);
    }
    return clazz;
}

}  // namespace ndk
