#pragma once

#include <vendor/zenta/hardware/charger/1.0/ICharger.h>

namespace android::hardware {

using vendor::zenta::hardware::charger::V1_0::ICharger;

struct TestCharger : ICharger {
    Return<int32_t> getBatteryCurrentNow() override { return -1200; }
    Return<void> notifyScreenStatus(int32_t status) override {
        mScreen = status;
        return status >= 0 ? Void() : Status::fromExceptionCode(Status::EX_ILLEGAL_STATE, "off");
    }
    int32_t mScreen = 0;
};

}  // namespace android::hardware
