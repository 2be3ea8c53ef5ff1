#pragma once

#include <binder/Parcel.h>
#include <hidl_linux/DeathLinks.h>
#include <hidl_linux/HidlCodes.h>
#include <hidl_linux/HidlWire.h>

#include <functional>
#include <tuple>
#include <type_traits>

namespace android::hardware::details {

/** A call to a binder: the request goes in first, then transact(), then results() or none. */
class OutgoingCall {
  public:
    template <typename... A>
    explicit OutgoingCall(const char* descriptor, const A&... arguments) {
        writeToken(descriptor);
        if (mStatus.isOk()) {
            mStatus.setFromStatusT(
                    Wire<std::tuple<const A&...>>::write(&mRequest, std::tie(arguments...)));
        }
    }

    /** Errors of the arguments, of the way, and of the service. */
    const Status& transact(IBinder* remote, uint32_t code, uint32_t flags = 0);

    /** False, and status() tells, when the call failed or the reply is not made of these. */
    template <typename... T>
    bool results(std::tuple<T...>* values) {
        if (mStatus.isOk()) {
            mStatus.setFromStatusT(Wire<std::tuple<T...>>::read(mReply, values));
        }
        return mStatus.isOk();
    }
    const Status& status() const { return mStatus; }

  private:
    void writeToken(const char* descriptor);

    Parcel mRequest;
    Parcel mReply;
    Status mStatus;
};

/** A call with one result, or none if R is void. */
template <typename R, typename... A>
Return<R> callRemote(IBinder* remote, const char* descriptor, uint32_t code,
                     const A&... arguments) {
    OutgoingCall outgoing(descriptor, arguments...);
    outgoing.transact(remote, code);
    if constexpr (std::is_void_v<R>) {
        return outgoing.status();
    } else {
        std::tuple<R> result;
        if (!outgoing.results(&result)) {
            return outgoing.status();
        }
        return std::get<0>(std::move(result));
    }
}

/** A call whose results go to `callback`, which is not called when it fails. */
template <typename... Out, typename... A>
Return<void> queryRemote(IBinder* remote, const char* descriptor, uint32_t code,
                         const std::function<void(Out...)>& callback, const A&... arguments) {
    if (callback == nullptr) {
        return Status::fromExceptionCode(Status::EX_ILLEGAL_ARGUMENT, "no callback for the result");
    }
    OutgoingCall outgoing(descriptor, arguments...);
    outgoing.transact(remote, code);
    std::tuple<std::remove_cvref_t<Out>...> results;
    if (outgoing.results(&results)) {
        std::apply(callback, results);
    }
    return outgoing.status();
}

/**
 * The proxy of an object behind a binder, without the interface's own calls. Thread-safe. A binder
 * of this process is called on the caller's thread.
 */
template <typename I>
class HidlProxy : public I {
  public:
    using IBase = hidl::base::V1_0::IBase;

    explicit HidlProxy(const sp<IBinder>& remote) : mRemote(remote), mLinks(remote) {}

    bool isRemote() const final { return true; }
    sp<IBinder> _hidl_binder() final { return mRemote; }

    Return<void> interfaceChain(IBase::interfaceChain_cb callback) final {
        return queryRemote(mRemote.get(), IBase::descriptor, kInterfaceChain, callback);
    }
    Return<void> interfaceDescriptor(IBase::interfaceDescriptor_cb callback) final {
        return queryRemote(mRemote.get(), IBase::descriptor, kInterfaceDescriptor, callback);
    }
    Return<void> ping() final { return callRemote<void>(mRemote.get(), IBase::descriptor, kPing); }
    Return<void> notifySyspropsChanged() final {
        OutgoingCall outgoing(IBase::descriptor);
        return outgoing.transact(mRemote.get(), kNotifySyspropsChanged, IBinder::FLAG_ONEWAY);
    }

    Return<bool> linkToDeath(const sp<hidl_death_recipient>& recipient, uint64_t cookie) final {
        serveCallbacksFrom(mRemote.get());
        return mLinks.link(recipient, cookie, this);
    }
    Return<bool> unlinkToDeath(const sp<hidl_death_recipient>& recipient) final {
        return mLinks.unlink(recipient);
    }

  protected:
    template <typename R, typename... A>
    Return<R> call(uint32_t code, const A&... arguments) {
        return callRemote<R>(mRemote.get(), I::descriptor, code, arguments...);
    }
    template <typename... Out, typename... A>
    Return<void> query(uint32_t code, const std::function<void(Out...)>& callback,
                       const A&... arguments) {
        return queryRemote(mRemote.get(), I::descriptor, code, callback, arguments...);
    }
    /** One-way: OK when the call is under way. */
    template <typename... A>
    Return<void> send(uint32_t code, const A&... arguments) {
        OutgoingCall outgoing(I::descriptor, arguments...);
        return outgoing.transact(mRemote.get(), code, IBinder::FLAG_ONEWAY);
    }

  private:
    const sp<IBinder> mRemote;
    DeathLinks mLinks;
};

}  // namespace android::hardware::details
