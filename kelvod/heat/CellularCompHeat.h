#pragma once

#include <utils/Mutex.h>
#include <utils/Singleton.h>

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "heat/ComponentHeat.h"
#include "heat/HeatTables.h"
#include "heat/RadioTexts.h"
#include "shelltemp/ThermalZone.h"

/**
 * Heat of the modem, from the usage feed's figure or else from what clients tell of signal and
 * traffic. Samples are mW (the feed's) or mA (from the texts), with the temperature of the power
 * amplifier over that of a reference zone (m°C). Thread-safe.
 *
 * Lock order: this component's mutex, then the sample buffer's or the central state's.
 */
class CellularCompHeat : public virtual ComponentHeat, public android::Singleton<CellularCompHeat> {
  public:
    int processRawSample() override;
    int getHeatContribution() override;
    std::shared_ptr<HeatInfo> getHeatInfo() override;

    /** Takes a client's text on the signal. Nothing while the feed has a figure. */
    void processCellularSignal(const std::string& text);
    /** Takes a client's text on the traffic and makes a sample of it; likewise. */
    void processCellularSpeed(const std::string& text);

  private:
    friend class android::Singleton<CellularCompHeat>;
    CellularCompHeat();

    void initConfig();
    void takeTable(kelvo::HeatTable<kelvo::ModemCurrent> table);
    void findZones(const Json::Value& model);
    int getTzTemp(const kelvo::ThermalZone& zone) const;
    int compCellPower() REQUIRES(mMutex);
    void logSpeed() REQUIRES(mMutex);

    // Constant after construction.
    std::vector<kelvo::ModemCurrent> mTable;  // ascending by RSRP
    kelvo::ThermalZone mTzPa;
    kelvo::ThermalZone mTzBase;
    bool mTzFound = false;

    android::Mutex mMutex;  // guards the radio's state, the pushes and the coefficients
    kelvo::CellularSignal mSignal GUARDED_BY(mMutex);
    int64_t mSpeed GUARDED_BY(mMutex) = 0;  // bytes, of the latest text
    // Each way of asking keeps its own; 0.0 until the center was asked.
    float mContributionCoefficient GUARDED_BY(mMutex) = 0.0F;
    float mReportCoefficient GUARDED_BY(mMutex) = 0.0F;
};
