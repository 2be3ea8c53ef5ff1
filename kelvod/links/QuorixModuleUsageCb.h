#pragma once

#include <utils/Mutex.h>

#include <cstdint>
#include <vector>

#include "links/IZentaQuorixModuleUsage.h"
#include "links/QuorixManager.h"
#include "module_usage.pb.h"

namespace kelvo {

/** Gets the engine's reports on binder threads and turns them into the modules' power. */
class QuorixModuleUsageCb : public BnZentaQuorixModuleUsage {
  public:
    /** `mutex` serialises reports; both live longer than this. */
    QuorixModuleUsageCb(android::Mutex& mutex, ModulePower& power);

    /** Always good: the engine can do nothing about a report that cannot be read. */
    android::binder::Status informModuleUsage(int32_t version,
                                              const std::vector<uint8_t>& data) override;
    /** Gives nothing. */
    android::binder::Status getTessilStats(int32_t kind, std::vector<uint8_t>* stats) override;

  private:
    bool parseMessage(const std::vector<uint8_t>& data) REQUIRES(mMutex);
    void parseCpuData() REQUIRES(mMutex);
    void parseCellularData() REQUIRES(mMutex);
    void parseWifiData() REQUIRES(mMutex);
    void parseDisplayData() REQUIRES(mMutex);

    android::Mutex& mMutex;  // the manager's; guards what follows, and writing the power
    com::zenta::thermal::ModuleUsage mUsage GUARDED_BY(mMutex);  // the last that was parsed
    ModulePower& mPower;
};

}  // namespace kelvo
