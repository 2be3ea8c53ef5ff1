#pragma once

#include <android/hidl/base/1.0/IBase.h>
#include <hidl/HidlBinderSupport.h>
#include <hidl_linux/ServiceManagement.h>

#include <string>

namespace android::hardware::details {

/**
 * What an interface has beside its own calls: `struct IFoo : details::HidlInterface<IFoo>`. IFoo
 * gives `descriptor` and the two functions that make its proxy and its stub,
 * `static sp<IFoo> _hidl_newProxy(const sp<IBinder>&)` and
 * `static sp<BBinder> _hidl_newStubOf(const sp<IFoo>&)`. Thread-safe.
 */
template <typename I>
struct HidlInterface : public hidl::base::V1_0::IBase {
    using IBase = hidl::base::V1_0::IBase;

    /**
     * The service of this instance name; null when there is none. Waits for one that the device's
     * manifest declares, returns at once for any other. `getStub` asks for an implementation to be
     * loaded into the process; there are none.
     */
    static sp<I> getService(const std::string& instance = "default", bool getStub = false) {
        return getStub ? nullptr : find(instance, Wait::kWhenDeclared);
    }
    static sp<I> getService(const char* instance, bool getStub = false) {
        return getService(std::string(instance), getStub);
    }
    static sp<I> getService(const hidl_string& instance, bool getStub = false) {
        return getService(std::string(instance), getStub);
    }
    static sp<I> getService(bool getStub) { return getService("default", getStub); }

    /** As getService(), but never waits. */
    static sp<I> tryGetService(const std::string& instance = "default", bool getStub = false) {
        return getStub ? nullptr : find(instance, Wait::kNever);
    }
    static sp<I> tryGetService(const char* instance, bool getStub = false) {
        return tryGetService(std::string(instance), getStub);
    }
    static sp<I> tryGetService(const hidl_string& instance, bool getStub = false) {
        return tryGetService(std::string(instance), getStub);
    }
    static sp<I> tryGetService(bool getStub) { return tryGetService("default", getStub); }

    /** Makes this object the service of this instance name; UNKNOWN_ERROR when that is refused. */
    [[nodiscard]] status_t registerAsService(const std::string& instance = "default") {
        return registerService(I::descriptor, instance, _hidl_binder());
    }

    /** Tells each registration of this instance from now on, and the present one; binder thread. */
    static bool registerForNotifications(
            const std::string& instance,
            const sp<hidl::manager::V1_0::IServiceNotification>& notification) {
        return notifyOfService(I::descriptor, instance, notification);
    }

    static Return<sp<I>> castFrom(const sp<I>& parent, bool /*emitError*/ = false) {
        return parent;
    }
    /**
     * The object as this interface; null when it has another one. A proxy asks its service, and
     * when that fails the answer is null, or the error if `emitError`.
     */
    static Return<sp<I>> castFrom(const sp<IBase>& parent, bool emitError = false) {
        // NOLINTNEXTLINE(google-readability-casting): also from a proxy of the same interface
        if (sp<I> same = dynamic_cast<I*>(parent.get()); same != nullptr) {
            return same;
        }
        if (parent == nullptr || !parent->isRemote()) {
            return sp<I>();
        }
        const Return<bool> speaks = hasInterface(parent, I::descriptor);
        if (!speaks.isOk() && emitError) {
            return ReturnReader::statusOf(speaks);
        }
        return speaks.withDefault(false) ? I::_hidl_newProxy(parent->_hidl_binder()) : sp<I>();
    }

    Return<void> interfaceChain(interfaceChain_cb callback) override {
        callback({I::descriptor, IBase::descriptor});
        return {};
    }
    Return<void> interfaceDescriptor(interfaceDescriptor_cb callback) override {
        callback(I::descriptor);
        return {};
    }

  protected:
    sp<BBinder> _hidl_newStub() override { return I::_hidl_newStubOf(static_cast<I*>(this)); }

  private:
    static sp<I> find(const std::string& instance, Wait wait) {
        const sp<IBinder> binder = findService(I::descriptor, instance, wait);
        return binder != nullptr ? fromBinder<I>(binder) : nullptr;
    }
};

}  // namespace android::hardware::details
