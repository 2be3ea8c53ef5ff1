#pragma once

#include <utils/Mutex.h>
#include <utils/Singleton.h>
#include <vendor/zenta/hardware/displaypanelfeature/1.0/IDisplayPanelFeature.h>

#include <atomic>
#include <cstdint>
#include <map>
#include <optional>

#include "heat/DisplayConfig.h"
#include "links/PatientCaller.h"

/**
 * Estimates the panel's power: emissive power in proportion to the luminance, and the driver IC's,
 * which depends on the frame rate. Level and maximum come from the backlight's nodes on Qualcomm
 * phones, from the panel HAL on others. Built on first use; thread-safe.
 */
class DisplayModel : public android::Singleton<DisplayModel> {
  public:
    void init();

    /** The panel's highest level; 1 when its node cannot be read, 0 when the HAL does not answer.
     */
    int getMaxBrightness();
    /** 0; 1 when the node cannot be read, 2 when its value is out of range (`level` left alone). */
    int getBrightness(int& level);
    /** Luminance (nits) at a level. */
    int convBr2Nit(int level) const;
    /** Power (mW) of the driver IC at a frame rate; -1.0 above the table's highest. */
    float compDdicPower(int fps) const;
    /** Power (whole mW) of the display as it is now, 0.0 with the screen off. */
    float getDisplayPower();

    /** 0, or -19 when there is no panel HAL. */
    int checkPanelService();
    /** First byte of the HAL's value with this number; 0 when it does not answer. */
    int getValFromPanelService(unsigned int id);

  private:
    friend class android::Singleton<DisplayModel>;
    using IDisplayPanelFeature =
            vendor::zenta::hardware::displaypanelfeature::V1_0::IDisplayPanelFeature;
    DisplayModel();

    /** First byte of a value, when the HAL has answered. */
    using PanelValue = std::optional<int>;

    int findPanel();
    PanelValue askPanel(const android::sp<IDisplayPanelFeature>& service, unsigned int id);
    android::sp<IDisplayPanelFeature> panel();
    void dropPanel(const android::sp<IDisplayPanelFeature>& panel);
    int readMaxBrightness();

    // Constant after init().
    int32_t mBrightness = 0;  // nits at the standard level
    float mCoeff = 0.0F;      // mW per nit
    int32_t mStanLevel = 0;
    DisplayConfig mConfig;
    std::map<int, float> mDdicConf;
    std::map<int, float> mElConf;

    std::atomic<int32_t> mMaxBrightness = 0;

    kelvo::PatientCaller mCaller{"the display panel"};
    android::Mutex mMutex;  // a leaf: the HAL is called without it
    android::sp<IDisplayPanelFeature> mPanel GUARDED_BY(mMutex);  // null until it is found
};
