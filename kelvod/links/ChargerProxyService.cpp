#include "links/ChargerProxyService.h"

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
    mOwner->forget();
}

bool ChargerProxyService::checkService() {
    if (mCharger != nullptr) {
        return true;
    }
    // Not getService(): for a HAL that the manifest names and that is down it would wait without
    // an end, and the fitting thread with it.
    mCharger = ICharger::tryGetService(kInstance);
    if (mCharger == nullptr) {
        KLOGE("unable to get Charger service");
        return false;
    }
    if (!linkToDeath()) {
        mCharger = nullptr;
        return false;
    }
    KLOGD("Link to death notification successful");
    return true;
}

bool ChargerProxyService::linkToDeath() {
    if (mDeathRecipient == nullptr) {
        mDeathRecipient = new ChargerProxyServiceDeathRecipient(this);
    }
    const Return<bool> linked = mCharger->linkToDeath(mDeathRecipient, kDeathCookie);
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
    Mutex::Autolock lock(mMutex);
    if (!checkService()) {
        KLOGD("Couldn't get battery remain because of ChargerProxyService error.");
        return kNoCurrent;
    }
    // A HAL that dies during the call is one that cannot be reached.
    return mCharger->getBatteryCurrentNow().withDefault(kNoCurrent);
}

void ChargerProxyService::notifyScreenStatus(int status) {
    Mutex::Autolock lock(mMutex);
    if (!checkService()) {
        KLOGD("Couldn't notifyScreenStatus because of ChargerProxyService error.");
        return;
    }
    const Return<void> told = mCharger->notifyScreenStatus(status);
    if (!told.isOk()) {
        KLOGD("the charger service refuses the screen status: %s", told.description().c_str());
    }
}

void ChargerProxyService::forget() {
    sp<ICharger> dead;  // released after the lock: that takes the links back
    Mutex::Autolock lock(mMutex);
    dead = mCharger;
    mCharger = nullptr;
}
