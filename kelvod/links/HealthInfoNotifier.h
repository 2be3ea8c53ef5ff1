#pragma once

#include <utils/Singleton.h>

#include <memory>
#include <string>

#include <utils/StrongPointer.h>

class AidlHealthInfoListener;
class HidlHealthInfoListener;

/**
 * Learns from the platform's health service whether the phone is charging, and whether wirelessly,
 * and posts each change to the message loop: code 14 with 1 or 0 for charging, code 9 with the
 * scene's op code for wireless charging. The AIDL service is preferred to HIDL 2.0.
 *
 * Thread-safe: the references to listeners are constant after construction. Construction connects,
 * which takes a second when the service does not answer.
 */
class HealthInfoNotifier : public android::Singleton<HealthInfoNotifier> {
  public:
    /** Whether the phone was charging at the latest callback; false before one. */
    bool getOnChargeStats();
    /** The same for a wireless charger. */
    bool getChargerWirelessStats();

    void notifyChargeStats(bool charging);
    /** "wirless_charge" asks for that scene, every other text for the one before it. */
    void notifyWirelessStats(const std::string& scene);

  private:
    friend class android::Singleton<HealthInfoNotifier>;
    HealthInfoNotifier();

    void initHealthService();

    // One of them is there.
    std::shared_ptr<AidlHealthInfoListener> mAidlListener;
    android::sp<HidlHealthInfoListener> mHidlListener;
};
