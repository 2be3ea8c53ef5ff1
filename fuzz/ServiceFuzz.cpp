// Transactions of other processes: any codes, callers and parcels, one after the other, while time
// goes on. A transaction of the input: its code, who calls, how, and a counted parcel.

#include <binder/IServiceManager.h>
#include <binder/Parcel.h>
#include <binder_linux/LocalCall.h>

#include <limits>

#include "FuzzPhone.h"
#include "Input.h"

namespace {

using android::IBinder;
using android::Parcel;
using android::sp;
using android::String16;

constexpr size_t kMostCalls = 64;       // of an input
constexpr uint8_t kNamedCodes = 108;    // up to the last transaction
constexpr uint8_t kShellCommand = 109;  // and other codes that every binder knows
constexpr uint32_t kUids[] = {1000, 0, 1000, 10050, 2000, std::numeric_limits<uint32_t>::max()};
constexpr int kReadBack = 4;
constexpr int64_t kEnd = 6000;  // ms; what calls have put off is done then

uint32_t codeOf(Input& input) {
    const uint8_t code = input.byte();
    if (code < kNamedCodes) {
        return code;
    }
    constexpr uint32_t kOfEveryBinder[] = {
            IBinder::PING_TRANSACTION,      IBinder::INTERFACE_TRANSACTION,
            IBinder::DUMP_TRANSACTION,      IBinder::EXTENSION_TRANSACTION,
            IBinder::DEBUG_PID_TRANSACTION, IBinder::SYSPROPS_TRANSACTION};
    return code == kShellCommand ? input.number<uint32_t>() : input.oneOf(kOfEveryBinder);
}

void fill(Parcel& request, Input& input, uint8_t how, const sp<IBinder>& service) {
    if (how % 8 != 0) {
        request.writeInterfaceToken(service->getInterfaceDescriptor());
    }
    if (how % 3 == 0) {
        static const sp<IBinder> listener = new android::BBinder;
        request.writeStrongBinder(listener);
    }
    const Bytes bytes = input.counted();
    request.write(bytes.data(), bytes.size());
    request.setDataPosition(0);
}

void call(const sp<IBinder>& service, Input& input) {
    const uint32_t code = codeOf(input);
    const android::LocalCall caller(input.oneOf(kUids), 1);
    const uint8_t how = input.byte();
    Parcel request;
    Parcel reply;
    fill(request, input, how, service);
    service->transact(code, request, how & 0x40U ? nullptr : &reply,
                      how & 0x80U ? uint32_t{IBinder::FLAG_ONEWAY} : 0);
    for (int i = 0; i < kReadBack; ++i) {
        reply.readInt32();
    }
}

}  // namespace

void fuzzService(Bytes data) {
    FuzzPhone& phone = FuzzPhone::get();
    const sp<IBinder> service = android::defaultServiceManager()->checkService(String16("kelvo"));
    Input input(data);
    phone.setZones(input.flag() ? 41000 : 30000);
    for (size_t i = 0; i < kMostCalls && !input.empty(); ++i) {
        call(service, input);
        phone.run(input.byte() % 8 * 500);
    }
    phone.run(kEnd);
}
