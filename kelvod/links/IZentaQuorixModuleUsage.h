#pragma once

#include <binder/IInterface.h>
#include <binder/Status.h>

#include <cstdint>
#include <vector>

namespace kelvo {

/** Whom the usage-statistics engine reports to. */
class IZentaQuorixModuleUsage : public android::IInterface {
  public:
    DECLARE_META_INTERFACE(ZentaQuorixModuleUsage)

    enum Transaction : uint32_t {
        INFORM_MODULE_USAGE = 1,
        GET_TESSIL_STATS = 2,
    };

    /** Takes a report: a serialized ModuleUsage. `version` is the sender's interface version. */
    virtual android::binder::Status informModuleUsage(int32_t version,
                                                      const std::vector<uint8_t>& data) = 0;
    /** Statistics of the listener's own; the daemon gives none. */
    virtual android::binder::Status getTessilStats(int32_t kind, std::vector<uint8_t>* stats) = 0;
};

/** A sender's side. Any thread. */
class BpZentaQuorixModuleUsage : public android::BpInterface<IZentaQuorixModuleUsage> {
  public:
    explicit BpZentaQuorixModuleUsage(const android::sp<android::IBinder>& remote)
          : android::BpInterface<IZentaQuorixModuleUsage>(remote) {}

    android::binder::Status informModuleUsage(int32_t version,
                                              const std::vector<uint8_t>& data) override;
    /** The daemon has none. */
    android::binder::Status getTessilStats(int32_t, std::vector<uint8_t>*) override { return {}; }
};

/** The daemon's side, called on binder threads. */
class BnZentaQuorixModuleUsage : public android::BnInterface<IZentaQuorixModuleUsage> {
  public:
    android::status_t onTransact(uint32_t code, const android::Parcel& data, android::Parcel* reply,
                                 uint32_t flags) override;
};

}  // namespace kelvo
