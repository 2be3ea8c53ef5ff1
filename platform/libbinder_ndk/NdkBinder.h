#pragma once

#include <android/binder_ibinder.h>
#include <binder/Binder.h>
#include <utils/Mutex.h>

class LocalNdkBinder;

/**
 * The one object that stands for a binder in this API: LocalNdkBinder for those made here with
 * AIBinder_new, ForeignNdkBinder for all others. Thread-safe.
 */
struct AIBinder : public virtual android::RefBase {
    explicit AIBinder(const AIBinder_Class* clazz);

    /** Never null. */
    virtual android::sp<android::IBinder> getBinder() = 0;
    /** Null when it is a foreign one. */
    virtual LocalNdkBinder* asLocal() = 0;

    /** See AIBinder_associateClass. */
    bool associateClass(const AIBinder_Class* clazz);
    const AIBinder_Class* getClass() const;

    AIBinder(const AIBinder&) = delete;
    AIBinder& operator=(const AIBinder&) = delete;

  private:
    bool refuseOtherClass(const AIBinder_Class& wanted, const AIBinder_Class& present) const;

    mutable android::Mutex mClassLock;  // innermost: nothing is called while it is held
    const AIBinder_Class* mClass GUARDED_BY(mClassLock);
};

/** A binder that a class of this process implements. */
class LocalNdkBinder : public AIBinder, public android::BBinder {
  public:
    /** Owns the user data from now on. */
    LocalNdkBinder(const AIBinder_Class* clazz, void* userData);

    /** Null when `binder` is no local one of this API. */
    static LocalNdkBinder* from(const android::sp<android::IBinder>& binder);

    void* userData() const { return mUserData; }

    android::sp<android::IBinder> getBinder() override { return this; }
    LocalNdkBinder* asLocal() override { return this; }

    bool checkSubclass(const void* subclassID) const override;
    const android::String16& getInterfaceDescriptor() const override;
    android::status_t dump(int fd, const android::Vector<android::String16>& args) override;

  protected:
    ~LocalNdkBinder() override;
    android::status_t onTransact(uint32_t code, const android::Parcel& data, android::Parcel* reply,
                                 uint32_t flags) override;

  private:
    void* const mUserData;
};

/** A binder of another process, or one that the C++ library implements in this. */
class ForeignNdkBinder : public AIBinder {
  public:
    explicit ForeignNdkBinder(const android::sp<android::IBinder>& binder);

    android::sp<android::IBinder> getBinder() override { return mBinder; }
    LocalNdkBinder* asLocal() override { return nullptr; }

  private:
    const android::sp<android::IBinder> mBinder;
};

/** The AIBinder of this binder, made when there is none yet; null for null. */
android::sp<AIBinder> ndkBinderOf(const android::sp<android::IBinder>& binder);

/** With a strong reference for whoever the caller gives it to. */
AIBinder* giveOut(const android::sp<AIBinder>& binder);
