#pragma once

#include <cstdint>

#include "base/Numeric.h"

/** One reading of a component: a power (mW or mA) or, for the ambient component, m°C. */
class EnergySample {
  public:
    /** `timestamp` is a monotonic second. */
    EnergySample(int type, float value, int timestamp) : EnergySample(type, value, timestamp, 0) {}
    /** `ntcTemp` (m°C) is a difference of board thermistors taken with the reading. */
    EnergySample(int type, float value, int timestamp, int ntcTemp)
          : mType(type), mValue(value), mTimestamp(timestamp), mNtcTemp(ntcTemp) {}

    int32_t getType() const { return mType; }
    /** The reading, truncated toward zero. */
    int32_t getValue() const { return kelvo::saturatingInt32(static_cast<double>(mValue)); }
    int32_t getTimeStamp() const { return mTimestamp; }
    int32_t getNtcTemp() const { return mNtcTemp; }

  private:
    int32_t mType;  // the ComponentType, with one exception: see WifiCompHeat
    float mValue;
    int32_t mTimestamp;
    int32_t mNtcTemp;
};
