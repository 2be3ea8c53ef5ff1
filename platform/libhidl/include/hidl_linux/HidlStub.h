#pragma once

#include <binder/Binder.h>
#include <binder/Parcel.h>
#include <hidl_linux/HidlWire.h>

#include <functional>
#include <tuple>
#include <type_traits>

namespace android::hardware::details {

/** Passes transactions on to an implementation in this process, which it keeps. Thread-safe. */
class HidlStub : public BBinder {
  public:
    HidlStub(const sp<hidl::base::V1_0::IBase>& object, const char* descriptor);

    const String16& getInterfaceDescriptor() const override { return mDescriptor; }
    bool checkSubclass(const void* subclassId) const override { return subclassId == &kSubclassId; }
    const sp<hidl::base::V1_0::IBase>& object() const { return mObject; }

    /** What checkSubclass() knows stubs by. */
    static const int kSubclassId;

  protected:
    status_t onTransact(uint32_t code, const Parcel& data, Parcel* reply, uint32_t flags) override;

    /**
     * The interface's own calls, from IBinder::FIRST_CALL_TRANSACTION on, with the interface token
     * read already and `reply` not null. UNKNOWN_TRANSACTION for other codes.
     */
    virtual status_t dispatch(uint32_t code, const Parcel& data, Parcel* reply);

    /**
     * Writes how the call ended, before the results. What an implementation returns as an error is
     * its caller's to handle, not a reason to end this process. OK when results may follow.
     */
    static status_t writeStatus(Parcel* reply, const return_status& result);

    /** A call without arguments whose results come through a callback. */
    template <typename... Out, typename Call>
    static status_t answer(Parcel* reply, std::type_identity<std::function<void(Out...)>>,
                           Call call) {
        status_t written = NO_INIT;  // until the callback comes
        const return_status& result = call([&](Out... out) {
            written = writeStatus(reply, return_status());
            if (written == OK) {
                written = Wire<std::tuple<const Out&...>>::write(reply, std::tie(out...));
            }
        });
        if (const Status& status = ReturnReader::statusOf(result); !status.isOk()) {
            return writeStatus(reply, result);
        }
        return written != NO_INIT ? written : FAILED_TRANSACTION;
    }

  private:
    status_t dispatchBase(uint32_t code, Parcel* reply);

    const sp<hidl::base::V1_0::IBase> mObject;
    const String16 mDescriptor;
};

/** The stub of an interface, whose dispatch() names the method that serves each code. */
template <typename I>
class HidlStubOf : public HidlStub {
  public:
    explicit HidlStubOf(const sp<I>& object) : HidlStub(object, I::descriptor), mService(object) {}

  protected:
    template <typename R, typename... A>
    status_t serve(const Parcel& data, Parcel* reply, Return<R> (I::*method)(A...)) {
        std::tuple<std::remove_cvref_t<A>...> arguments;
        const status_t status = Wire<decltype(arguments)>::read(data, &arguments);
        if (status != OK) {
            return status;
        }
        const Return<R> result = std::apply(
                [&](auto&... argument) { return (mService.get()->*method)(argument...); },
                arguments);
        const status_t written = writeStatus(reply, result);
        if constexpr (!std::is_void_v<R>) {
            return written == OK && result.isOk() ? Wire<R>::write(reply, result) : written;
        }
        return written;
    }

    template <typename... Out>
    status_t serveQuery(const Parcel&, Parcel* reply,
                        Return<void> (I::*method)(std::function<void(Out...)>)) {
        return answer(reply, std::type_identity<std::function<void(Out...)>>(),
                      [&](const auto& callback) { return (mService.get()->*method)(callback); });
    }
    template <typename A, typename... Out>
    status_t serveQuery(const Parcel& data, Parcel* reply,
                        Return<void> (I::*method)(A, std::function<void(Out...)>)) {
        std::remove_cvref_t<A> argument{};
        const status_t status = Wire<decltype(argument)>::read(data, &argument);
        return status != OK ? status
                            : answer(reply, std::type_identity<std::function<void(Out...)>>(),
                                     [&](const auto& callback) {
                                         return (mService.get()->*method)(argument, callback);
                                     });
    }

  private:
    const sp<I> mService;
};

}  // namespace android::hardware::details
