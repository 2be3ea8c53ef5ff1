#pragma once

#include <utils/Mutex.h>

#include <cstdint>
#include <map>
#include <string>

#include "heat/HeatTables.h"

/** The display's figures in the configuration ("brightness_model"). Thread-safe. */
class DisplayConfig {
  public:
    /** Reads the figures. 0, or -1 when the configuration has none. */
    int init();
    /** A figure by name, -1.0 when there is none. */
    float getCoeffs(const std::string& name);
    /** Luminance (nits) → emissive power (mW): the one reference point. */
    void getElConf(std::map<int, float>& elConf);
    /** Frame rate (frames/s) → power of the driver IC (mW). */
    void getDdicConf(std::map<int, float>& ddicConf);

    /** Luminance (nits) at the standard level, and that backlight level. */
    float stanBrightness() const { return kStanBrightness; }
    int32_t stanLevel() const { return kStanLevel; }

  private:
    static constexpr float kStanBrightness = 480.0F;
    static constexpr int32_t kStanLevel = 2047;

    void takeTableLocked(const kelvo::HeatTable<kelvo::NamedFigure>& table) REQUIRES(mMutex);
    void noteStandardLocked() REQUIRES(mMutex);

    android::Mutex mMutex;  // taken before the configuration's
    std::map<std::string, float> mDisplayCoeffs GUARDED_BY(mMutex);
};
