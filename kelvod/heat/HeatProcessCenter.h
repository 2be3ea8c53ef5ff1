#pragma once

#include <json/value.h>
#include <utils/Mutex.h>

#include <array>
#include <atomic>
#include <cstdint>
#include <map>
#include <memory>
#include <string>

#include "base/PeriodicLoop.h"
#include "heat/ComponentHeat.h"
#include "heat/ComponentType.h"
#include "heat/HeatRecords.h"
#include "heat/HeatTables.h"

/**
 * Owner of the six heat components: samples them every 5 s while monitoring runs, ranks them,
 * reports on them, and keeps statistics of the day. With an unusable configuration it has no
 * components and does nothing.
 *
 * Thread-safe. Lock order: mMonitorLock or mBigDataLock, then mComponentsLock, then mReportLock or
 * a component's, then its buffer's or that of an engine which it asks; components read the
 * configuration under theirs when they are made. The central state's and the data collector's are
 * also taken under mBigDataLock. None of these engines calls the center under a lock of its own.
 * No other process is called under a lock: one that does not answer holds up, for a second, the
 * thread that asks it.
 */
class HeatProcessCenter : private kelvo::PeriodicLoop::Client {
  public:
    /** The main heat source; both are -1 when there is none. */
    struct MainHeat {
        int32_t type;  // ComponentType
        int32_t heat;  // m°C
    };

    static constexpr float kNoCoefficient = -1.0F;

    /** Built on first use and never destroyed: its thread outlives main. */
    static HeatProcessCenter* getInstance();

    /** True when the configuration was unusable; permanent for the process. */
    bool isInvalid() const { return mInitInValid; }
    /** Power (mW or mA) per m°C of the component `name`; -1.0 when unknown. */
    float getCoeffs(const std::string& name) const;

    /**
     * Starts sampling and the usage feed; the thread is made by the first call. When another thread
     * is telling the feed of an earlier change, that thread tells it of this one.
     */
    void startMonitor();
    /** Ends both and forgets the samples. False when nothing was running. */
    bool stopMonitor();

    /** The component that heats most. Ends the stretch of samples that contributions cover. */
    MainHeat getMainHeatCompent();
    /** "cpu:5,display:3,…,ambient:1,ambient:25,": contributions (m°C), then ambient (°C). */
    std::string getCompentsHeat();
    /** A styled JSON object: name → {"avgHeat", "keyFactor"}; empty when not monitoring. */
    std::string getCompentsHeatDetailInfo();
    /** Hands the statistics to the data collector under `day` and starts them anew. */
    void collectBigData(const std::string& day);

  private:
    using Heats = std::map<int32_t, int32_t>;  // ComponentType → m°C

    HeatProcessCenter();

    bool initConfig();
    bool takeCoefficients(const kelvo::HeatTable<kelvo::NamedFigure>& table);
    bool createComponents();

    // The sampling loop (HeatProcessCenterLoop.cpp)
    bool startThread() REQUIRES(mMonitorLock);
    void onThreadStart() override;
    bool runPass() override;
    bool onWoken(int32_t intervalSeconds) override;
    bool onTimeout() override;
    void onThreadEnd(kelvo::PeriodicLoop::End end, int error) override;

    // The usage feed, which runs while monitoring does
    void fulfilFeedWish() EXCLUDES(mMonitorLock);
    static void tellFeed(bool report);

    // Queries (HeatProcessCenterQueries.cpp)
    bool isSilent() const;
    ComponentHeat& componentLocked(int32_t type) REQUIRES(mComponentsLock);
    void generateReportInfo(Json::Value& root, const std::string& name,
                            const std::shared_ptr<HeatInfo>& info);
    void writeReport(Json::Value& report, const HeatInfo& info) REQUIRES(mReportLock);

    // Statistics (HeatProcessCenterBigData.cpp)
    void updateHeatBigRawData(const Heats& heats);
    void countLevelTime(int32_t level) REQUIRES(mBigDataLock);
    void handOverPackages(const std::string& day) REQUIRES(mBigDataLock);
    void handOverLevels(const std::string& day) REQUIRES(mBigDataLock);

    static constexpr int32_t kSamplingInterval = 5;  // s

    // Constant after construction.
    bool mInitInValid = false;
    std::map<std::string, float> mCoeffs;
    std::array<ComponentHeat*, kComponentTypes> mComponents = {};  // never freed

    std::atomic<bool> mRunning = false;
    kelvo::PeriodicLoop mLoop;

    enum class FeedWish { NONE, REPORT, END };

    // Serialises start and stop; guards the members below.
    android::Mutex mMonitorLock ACQUIRED_BEFORE(mComponentsLock);
    bool mThreadStarted GUARDED_BY(mMonitorLock) = false;
    FeedWish mFeedWish GUARDED_BY(mMonitorLock) = FeedWish::NONE;  // not told yet
    bool mTellsFeed GUARDED_BY(mMonitorLock) = false;              // somebody does

    // Held around each call into a component but processRawSample() and askForFactors(): guards no
    // member but what componentLocked() gives.
    android::Mutex mComponentsLock ACQUIRED_BEFORE(mReportLock);

    android::Mutex mReportLock;  // held by writeReport(), guards no member; a leaf

    // Guards the members below.
    android::Mutex mBigDataLock ACQUIRED_BEFORE(mComponentsLock);
    kelvo::HeatRecords mPkgHeatsourceData GUARDED_BY(mBigDataLock);
    kelvo::HeatRecords mHeatLevelSourceData GUARDED_BY(mBigDataLock);
    int32_t mLastLevel GUARDED_BY(mBigDataLock) = 0;
    int64_t mLastLevelTime GUARDED_BY(mBigDataLock) = 0;  // monotonic, ns
};
