#pragma once

#include <utils/Mutex.h>
#include <utils/Singleton.h>

#include <atomic>
#include <cstdint>
#include <functional>

#include "links/IZentaQuorix.h"
#include "links/PatientCaller.h"

namespace kelvo {

class QuorixModuleUsageCb;

/** Average power (mW) of each module in the latest report; -1 where it gave no usable data. */
struct ModulePower {
    static constexpr int32_t kNone = -1;

    std::atomic<int32_t> cpu = kNone;
    std::atomic<int32_t> cellular = kNone;
    std::atomic<int32_t> wifi = kNone;
    std::atomic<int32_t> display = kNone;
};

/**
 * The link to the usage-statistics engine, a service named "quorix": tells it when to report, and
 * keeps what it reports. An engine that is absent or dies leaves the latest figures as they are;
 * the next start, stop or registration looks for it again. Thread-safe; calls of the engine are
 * made without the mutex, because it may report during one.
 */
class QuorixManager : public android::Singleton<QuorixManager> {
  public:
    /** Looks the engine up. Whether there is one. */
    bool getQuorixService();
    /** Registers the callback, unless it is. */
    void regCallBack();
    /** Registers the callback in any case. 0, or -1 without an engine or when it refuses. */
    int registerQuorixCallback();
    /** Lets the engine begin, or end, to report. 0, or -1 without one or when it refuses. */
    int startQuorix();
    int stopQuorix();

    /** Figures (mW) of the latest report, -1 when it had none. */
    int32_t getWifi() const { return mPower.wifi; }
    int32_t getCellular() const { return mPower.cellular; }
    int32_t getDisplay() const { return mPower.display; }
    /** All figures, also the CPU's; written as a report comes in. */
    const ModulePower& power() const { return mPower; }

  private:
    friend class android::Singleton<QuorixManager>;
    QuorixManager();
    ~QuorixManager();

    class DeathNotifier;
    /** How a call of the engine went; a late engine counts as absent. */
    enum class Reply { ABSENT, REFUSED, GOOD };

    Reply tell(std::function<bool(const android::sp<IZentaQuorix>& engine)> call);
    Reply inform(int32_t event);
    android::sp<IZentaQuorix> connection();
    android::sp<IZentaQuorix> heldEngine();
    void holdEngine(android::sp<IZentaQuorix> engine);
    android::sp<QuorixModuleUsageCb> callback();
    void setRegistered(const android::sp<IZentaQuorix>& engine);
    void dropEngine();

    ModulePower mPower;  // written under the mutex, read by anyone

    const android::sp<DeathNotifier> mDeathNotifier;
    PatientCaller mCaller{"the usage-statistics engine"};  // one call at a time, also to connect

    // Held while a report is handled; a leaf, the engine is called without it.
    android::Mutex mMutex;
    android::sp<IZentaQuorix> mQuorix GUARDED_BY(mMutex);
    android::sp<QuorixModuleUsageCb> mCallback GUARDED_BY(mMutex);  // made once
    bool mRegistered GUARDED_BY(mMutex) = false;
};

}  // namespace kelvo
