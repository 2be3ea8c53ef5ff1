#include "service/KelvoService.h"

#include <binder/IPCThreadState.h>

#include "core/Log.h"

namespace kelvo {

android::status_t KelvoService::onTransact(uint32_t code, const android::Parcel& data,
                                           android::Parcel* reply, uint32_t flags) {
    const auto* caller = android::IPCThreadState::self();
    KLOGD("got transaction code:%d flags:%d from pid:%d uid:%d", code, flags,
          caller->getCallingPid(), caller->getCallingUid());
    return android::BBinder::onTransact(code, data, reply, flags);
}

}  // namespace kelvo
