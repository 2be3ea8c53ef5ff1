#pragma once

#include <cstdint>

#include "service/IKelvoService.h"

// Needs the headers that the one above includes first.
#include <binder/BinderService.h>

namespace kelvo {

/**
 * The daemon's binder object, registered as "kelvo". Called on any binder thread; what changes
 * clients, scenes or the configuration goes to the work thread as a message.
 */
class KelvoService : public BnKelvoService, public android::BinderService<KelvoService> {
  public:
    static const char* getServiceName() { return "kelvo"; }

    /**
     * A call without the interface's token, and a privileged call of a uid other than root's and
     * the system's, gets PERMISSION_DENIED and no reply. WOULD_BLOCK while too many messages wait.
     */
    android::status_t onTransact(uint32_t code, const android::Parcel& data, android::Parcel* reply,
                                 uint32_t flags) override;

  private:
    using Parcel = android::Parcel;
    /** Answers a call whose token has been read. */
    using Handler = void (KelvoService::*)(const Parcel& data, Parcel& reply);
    struct Transaction {
        uint32_t code;
        bool privileged;
        Handler handler;
        bool posts = false;  // a message, for which there must be room
    };

    static const Transaction* findTransaction(uint32_t code);

    // KelvoServiceClients.cpp
    void registerClient(const Parcel& data, Parcel& reply);
    void unregisterClient(const Parcel& data, Parcel& reply);
    void getThermalStatus(const Parcel& data, Parcel& reply);
    void notifyThermalStatus(const Parcel& data, Parcel& reply);

    // KelvoServiceConfig.cpp
    void getThermalConfig(const Parcel& data, Parcel& reply);
    void setDynamicConfig(const Parcel& data, Parcel& reply);
    void getVersion(const Parcel& data, Parcel& reply);
    void getBigData(const Parcel& data, Parcel& reply);
    void peekBigData(const Parcel& data, Parcel& reply);
    void reloadConfig(const Parcel& data, Parcel& reply);
    void getCpuLimitProcesses(const Parcel& data, Parcel& reply);

    // KelvoServiceTemps.cpp
    void getCurrentTemp(const Parcel& data, Parcel& reply);
    void getSpecifiedZoneTemps(const Parcel& data, Parcel& reply);
    void getAllShellTemps(const Parcel& data, Parcel& reply);
    void getShellTempAndType(const Parcel& data, Parcel& reply);
    void isNewSafetyType(const Parcel& data, Parcel& reply);
    void getAmbientTemp(const Parcel& data, Parcel& reply);

    // KelvoServiceState.cpp
    void setScreenStatus(const Parcel& data, Parcel& reply);
    void setCurrentPackage(const Parcel& data, Parcel& reply);
    void setLightLampStatus(const Parcel& data, Parcel& reply);
    void setScreenFoldStatus(const Parcel& data, Parcel& reply);
    void testComponentHeat(const Parcel& data, Parcel& reply);
    void setWifiInfo(const Parcel& data, Parcel& reply);
    void setNetworkInfo(const Parcel& data, Parcel& reply);
    void setNetworkSpeedInfo(const Parcel& data, Parcel& reply);
    void getComponentsHeatDetail(const Parcel& data, Parcel& reply);

    // What a reply with all shell temperatures is made of: this many outputs stand for a full set
    // with a reference, whose model index is the third figure; clients expect the second many.
    const int32_t mShellTempCount = 5;
    const int32_t mShellTempReplySize = 4;
    const int32_t mShellTempPriorityIndex = -1;
};

}  // namespace kelvo
