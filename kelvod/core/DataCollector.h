#pragma once

#include <json/value.h>
#include <utils/Mutex.h>
#include <utils/Singleton.h>

#include <cstdint>
#include <string>

namespace kelvo {

/** Categories of big data; the comment gives the member of the root object. */
enum DcType : int32_t {
    DC_PKG = 0,                // "pkg"
    DC_THERMAL = 1,            // "thermal"
    DC_SHELL_TEMP = 2,         // "shelltemp"
    DC_PKG_CURRENT = 3,        // "pkgcurrent"
    DC_HEAT_SOURCE = 4,        // "heatsource"
    DC_HEAT_LEVEL_SOURCE = 5,  // "heatlevelsource"
    DC_EXCEPT_THREAD = 6,      // "exceptthread"
    DC_TSENSOR_THERMAL = 7,    // "tsensorthermal"
};

/**
 * Store of field statistics: category → record key → field, as one JSON object that a framework
 * client fetches. Thread-safe.
 */
class DataCollector : public android::Singleton<DataCollector> {
  public:
    /** Sets one text field of a record; 0. Types outside DcType go to "unknown". */
    int setData(DcType type, const std::string& key, const std::string& field,
                const std::string& value);
    /** Replaces a whole record; 0. */
    int setData(DcType type, const std::string& key, const Json::Value& value);
    /** The root as styled JSON text. */
    std::string asJson() const;
    Json::Value getData() const;
    /**
     * Sets every category to null when at least `minDays` whole UTC days have passed since the last
     * time it did.
     */
    void reset(int minDays);

  private:
    friend class android::Singleton<DataCollector>;
    DataCollector() = default;

    Json::Value& getRequiredKey(DcType type, const std::string& key, const std::string& field)
            REQUIRES(mMutex);
    Json::Value& getRequiredKey(DcType type, const std::string& key) REQUIRES(mMutex);

    mutable android::Mutex mMutex;  // guards everything below; a leaf
    Json::Value mRoot GUARDED_BY(mMutex);
    // Days since the epoch. 0 makes the first reset(7) clear.
    int32_t mLastResetDay GUARDED_BY(mMutex) = 0;
};

}  // namespace kelvo
