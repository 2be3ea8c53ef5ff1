#include "links/ChargerProxyService.h"

#include <optional>

#include "base/Log.h"

using android::Mutex;
using android::sp;
using android::wp;
using android::hardware::Return;

ANDROID_SINGLETON_STATIC_INSTANCE(ChargerProxyService)

namespace {

constexpr char kInstance[] = "default";
constexpr uint64_t kDeathCookie = 17775;
constexpr int32_t kNoCurrent = -1;

}  // namespace

void ChargerProxyService::ChargerProxyServiceDeathRecipient::serviceDied(
        uint64_t, const wp<android::hidl::base::V1_0::IBase>&) {
    KLOGE("ChargerProxyService just died");
    mOwner->take(nullptr);
}

ChargerProxyService::ChargerProxyService()
      : mDeathRecipient(new ChargerProxyServiceDeathRecipient(this)) {}

sp<ChargerProxyService::ICharger> ChargerProxyService::connection() {
    {
        Mutex::Autolock lock(mMutex);
        if (mCharger != nullptr) {
            return mCharger;
        }
    }
    // Not getService(): for a HAL that the manifest names and that is down it would wait without
    // an end.
    const sp<ICharger> charger = ICharger::tryGetService(kInstance);
    if (charger == nullptr) {
        KLOGE("unable to get Charger service");
        return nullptr;
    }
    take(charger);  // before the link, so that a death at once finds it
    if (!linkToDeath(charger)) {
        take(nullptr);
        return nullptr;
    }
    KLOGD("Link to death notification successful");
    return charger;
}

bool ChargerProxyService::linkToDeath(const sp<ICharger>& charger) {
    const Return<bool> linked = charger->linkToDeath(mDeathRecipient, kDeathCookie);
    if (!linked.isOk()) {
        KLOGE("Transaction error in linking to Charger Service death: %s",
              linked.description().c_str());
        return false;
    }
    if (!linked) {
        KLOGE("Unable to link to Charger Service death notifications");
        return false;
    }
    return true;
}

int32_t ChargerProxyService::getBatteryCurrentNow() {
    const std::optional<int32_t> current =
            mCaller.ask(std::optional<int32_t>(), [this]() -> std::optional<int32_t> {
                const sp<ICharger> charger = connection();
                if (charger == nullptr) {
                    return std::nullopt;
                }
                // A HAL that dies during the call is one that cannot be reached.
                return charger->getBatteryCurrentNow().withDefault(kNoCurrent);
            });
    if (!current) {
        KLOGD("Couldn't get battery remain because of ChargerProxyService error.");
    }
    return current.value_or(kNoCurrent);
}

void ChargerProxyService::notifyScreenStatus(int status) {
    const bool reached = mCaller.ask(false, [this, status] {
        const sp<ICharger> charger = connection();
        if (charger == nullptr) {
            return false;
        }
        const Return<void> told = charger->notifyScreenStatus(status);
        if (!told.isOk()) {
            KLOGD("the charger service refuses the screen status: %s", told.description().c_str());
        }
        return true;
    });
    if (!reached) {
        KLOGD("Couldn't notifyScreenStatus because of ChargerProxyService error.");
    }
}

/** In place of the one held, which is released after the lock: that takes the links back. */
void ChargerProxyService::take(sp<ICharger> charger) {
    Mutex::Autolock lock(mMutex);
    std::swap(mCharger, charger);
}
