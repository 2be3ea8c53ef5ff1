#pragma once

#include <binder/IBinder.h>

#include <chrono>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <optional>
#include <thread>

#include "KelvodReport.h"
#include "client/ThermalLevel.h"

/**
 * The daemon as a client of its service sees it. Asks on a thread of its own, so that a daemon that
 * does not answer keeps nobody waiting; registers a listener, because the heat source is only told.
 * Needs the phone's binder driver. Thread-safe.
 */
class KelvodView {
  public:
    KelvodView();
    /** Waits for the call that is under way: by then the daemon must have ended, or answer. */
    ~KelvodView();
    KelvodView(const KelvodView&) = delete;
    KelvodView& operator=(const KelvodView&) = delete;

    /** The daemon now; none when it is not there, or does not answer within the limit. */
    std::optional<KelvodReport> look(std::chrono::milliseconds limit);

  private:
    class Listener;

    void run();
    std::optional<KelvodReport> ask();
    bool connect();
    void learnThresholds();
    std::optional<int32_t> levelAt(double celsius, int32_t status);

    std::mutex mMutex;  // guards what follows; a leaf
    std::condition_variable mChanged;
    int mAsked = 0;
    int mAnswered = 0;  // the latest of the looks that have been answered
    std::optional<KelvodReport> mReport;
    bool mStops = false;

    // Used by the thread alone.
    android::sp<android::IBinder> mKelvod;
    std::shared_ptr<Listener> mListener;
    client::ThermalThresholds mThresholds;
    int mThresholdsAge = 0;  // in looks
    std::optional<int32_t> mLevel;

    std::thread mThread;
};
