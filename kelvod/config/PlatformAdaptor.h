#pragma once

#include <json/value.h>
#include <utils/Singleton.h>

#include <cstdint>
#include <string>

#include "config/ChipNodes.h"

namespace kelvo {

/**
 * Which system-on-chip and which project (hardware model) the phone is. Found out once, at
 * construction; read-only and shared without a lock afterwards.
 */
class PlatformAdaptor : public android::Singleton<PlatformAdaptor> {
  public:
    /** Index into the platform table, -1 when the chip is not supported. */
    int32_t getPlatform() const { return mPlatform; }
    /** Name of the platform ("SM8450"), empty when the chip is not supported. */
    std::string getPlatformName() const;
    /** Project name exactly as the node holds it, a trailing newline included. */
    const std::string& getProjectName() const { return mProjectName; }
    /** True when neither MediaTek node exists. */
    bool isQcom() const { return mSource == ChipSource::QCOM; }

  private:
    friend class android::Singleton<PlatformAdaptor>;
    PlatformAdaptor();

    void readProjectName();
    bool readMtkChip(int32_t* chipId, int32_t* subId);
    bool readNodeChip(int32_t* chipId, int32_t* subId) const;
    void collectBCPower();
    void collectLCPower();
    void collectLLCPower();
    void collectStaticPower();
    int parseCpuPowerInfo(std::string path, Json::Value& out);

    const ChipSource mSource;
    int32_t mPlatform = -1;
    std::string mProjectName;
};

}  // namespace kelvo
