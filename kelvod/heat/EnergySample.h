#pragma once

#include <cstdint>

#include "base/Numeric.h"

/** One reading of a component: a power (mW or mA) or, for the ambient component, m°C. */
struct EnergySample {
    /** `time` is a monotonic second. */
    EnergySample(int sampleType, float reading, int time)
          : EnergySample(sampleType, reading, time, 0) {}
    /** `ntc` (m°C) is a difference of board thermistors taken with the reading. */
    EnergySample(int sampleType, float reading, int time, int ntc)
          : type(sampleType), value(reading), timestamp(time), ntcTemp(ntc) {}

    /** The reading, truncated toward zero. */
    int32_t getValue() const { return kelvo::saturatingInt32(value); }
    int32_t getTimeStamp() const { return timestamp; }
    int32_t getNtcTemp() const { return ntcTemp; }

    int32_t type;  // the ComponentType, with one exception: see WifiCompHeat
    float value;
    int32_t timestamp;
    int32_t ntcTemp;
};
