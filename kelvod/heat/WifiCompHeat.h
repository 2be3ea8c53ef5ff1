#pragma once

#include <utils/Mutex.h>
#include <utils/Singleton.h>

#include <cstdint>
#include <memory>
#include <string>

#include "heat/ComponentHeat.h"
#include "heat/RadioTexts.h"

/**
 * Heat of the Wi-Fi chip, from the usage feed's figure or else from what clients tell of signal
 * and traffic. Thread-safe. Lock order: this component's mutex, then the sample
 * buffer's or the central state's.
 */
class WifiCompHeat : public virtual ComponentHeat, public android::Singleton<WifiCompHeat> {
  public:
    int processRawSample() override;
    int getHeatContribution() override;
    std::shared_ptr<HeatInfo> getHeatInfo() override;

    /** Takes a client's text on the signal; the number of fields that were read. */
    int processWifiSignal(std::string& text);
    /** Takes a client's text on the traffic. Nothing while the feed has a figure. */
    void processWifiSpeed(std::string& text);

  private:
    friend class android::Singleton<WifiCompHeat>;
    WifiCompHeat();

    void pushTraffic() REQUIRES(mMutex);

    android::Mutex mMutex;  // guards the radio's state, the pushes and the coefficient
    kelvo::WifiSignal mSignal GUARDED_BY(mMutex);
    int64_t mWifiSpeed GUARDED_BY(mMutex) = 0;     // bytes, of the latest text
    float mCoefficient GUARDED_BY(mMutex) = 0.0F;  // 0.0 until the center was asked
};
