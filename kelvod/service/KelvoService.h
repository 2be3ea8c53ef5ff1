#pragma once

#include <cstdint>

#include "service/IKelvoService.h"

// Needs the headers that the one above includes first.
#include <binder/BinderService.h>

namespace kelvo {

/** The daemon's binder object, registered as "kelvo". Called on any binder thread. */
class KelvoService : public BnKelvoService, public android::BinderService<KelvoService> {
  public:
    static const char* getServiceName() { return "kelvo"; }

    android::status_t onTransact(uint32_t code, const android::Parcel& data, android::Parcel* reply,
                                 uint32_t flags) override;

  private:
    // What a reply with all shell temperatures is made of: this many outputs stand for a full set
    // with a reference, whose model index is the third figure; clients expect the second many.
    [[maybe_unused]] const int32_t mShellTempCount = 5;
    [[maybe_unused]] const int32_t mShellTempReplySize = 4;
    [[maybe_unused]] const int32_t mShellTempPriorityIndex = -1;
};

}  // namespace kelvo
