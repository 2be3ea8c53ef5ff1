// Reports of the usage-statistics engine, as the callback takes them off a parcel: the first byte
// of the input says how, the others are the serialized message.

#include <binder/Parcel.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <vector>

#include "Target.h"
#include "links/QuorixModuleUsageCb.h"

namespace {

constexpr uint8_t kRawParcel = 1;  // the bytes follow the token as they stand

int32_t lowest(const kelvo::ModulePower& power) {
    return std::min(
            {power.cpu.load(), power.cellular.load(), power.wifi.load(), power.display.load()});
}

}  // namespace

void fuzzUsage(Bytes data) {
    static android::Mutex mutex;
    static kelvo::ModulePower power;
    static const android::sp<kelvo::QuorixModuleUsageCb> callback =
            new kelvo::QuorixModuleUsageCb(mutex, power);
    if (data.empty()) {
        return;
    }
    android::Parcel request;
    android::Parcel reply;
    request.writeInterfaceToken(callback->getInterfaceDescriptor());
    if (data[0] == kRawParcel) {
        request.write(data.data() + 1, data.size() - 1);
    } else {
        request.writeInt32(1);
        request.writeByteVector(std::vector<uint8_t>(data.begin() + 1, data.end()));
    }
    callback->transact(kelvo::IZentaQuorixModuleUsage::INFORM_MODULE_USAGE, request, &reply);
    if (lowest(power) < -1) {
        std::abort();
    }
}
