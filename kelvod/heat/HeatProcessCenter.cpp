#include "heat/HeatProcessCenter.h"

#include <utility>

#include "base/Log.h"
#include "heat/AmbientCompHeat.h"
#include "heat/CellularCompHeat.h"
#include "heat/CpuCompHeat.h"
#include "heat/DisplayCompHeat.h"
#include "heat/GpuCompHeat.h"
#include "heat/HeatSection.h"
#include "heat/WifiCompHeat.h"
#include "links/QuorixManager.h"

using android::Mutex;
using kelvo::HeatTable;
using kelvo::NamedFigure;
using kelvo::QuorixManager;

namespace {

void logCoefficient(const NamedFigure& row) {
    KLOGE("heatpc device_name:%s, coefficient:%f", row.name.c_str(),
          static_cast<double>(row.value));
}

}  // namespace

HeatProcessCenter* HeatProcessCenter::getInstance() {
    static auto* const center = new HeatProcessCenter;
    return center;
}

HeatProcessCenter::HeatProcessCenter() : mLoop("comp-monitor", this, kSamplingInterval) {
    mInitInValid = !initConfig();
    if (!mInitInValid) {
        createComponents();
    }
}

bool HeatProcessCenter::initConfig() {
    KLOGE("heatpc start parse heatsource_model");
    Json::Value model;
    if (kelvo::readHeatSection(&model, kelvo::key::kHeatModel) != 0) {
        KLOGE("heatpc get heatsource_detection model failed: %s", model.toStyledString().c_str());
        return false;
    }
    return takeCoefficients(kelvo::parseHeatModel(model));
}

// Without its columns the table is empty, which is usable; one bad entry makes all of it bad.
bool HeatProcessCenter::takeCoefficients(const HeatTable<NamedFigure>& table) {
    const bool usable = table.faults.empty() || !table.hasColumns;
    for (const NamedFigure& row : table.rows) {
        logCoefficient(row);
        if (usable) {
            mCoeffs[row.name] = row.value;
        }
    }
    if (table.badRow) {
        logCoefficient(*table.badRow);
    }
    return usable;
}

bool HeatProcessCenter::createComponents() {
    mComponents = {new CpuCompHeat,
                   new DisplayCompHeat,
                   &CellularCompHeat::getInstance(),
                   &WifiCompHeat::getInstance(),
                   new GpuCompHeat,
                   new AmbientCompHeat};
    return true;
}

float HeatProcessCenter::getCoeffs(const std::string& name) const {
    if (mCoeffs.empty()) {
        KLOGE("heatpc heat source Coeffs is empty.");
        return kNoCoefficient;
    }
    const auto found = mCoeffs.find(name);
    return found != mCoeffs.end() ? found->second : kNoCoefficient;
}

void HeatProcessCenter::startMonitor() {
    if (mInitInValid) {
        return;
    }
    {
        Mutex::Autolock lock(mMonitorLock);
        if (!mThreadStarted && !startThread()) {
            return;
        }
        mThreadStarted = true;
        mRunning = true;
        mFeedWish = FeedWish::REPORT;
    }
    fulfilFeedWish();
}

bool HeatProcessCenter::stopMonitor() {
    {
        Mutex::Autolock lock(mMonitorLock);
        if (mInitInValid || !mRunning) {
            return false;
        }
        mRunning = false;
        mLoop.wake();
        mFeedWish = FeedWish::END;
        for (int32_t type = 0; type < kComponentTypes; ++type) {
            Mutex::Autolock componentsLock(mComponentsLock);
            componentLocked(type).clearSamples();
        }
    }
    fulfilFeedWish();
    return true;
}

// The engine is told without the lock, since it may hang, and by one thread at a time, so that the
// latest wish is the last that it hears of.
void HeatProcessCenter::fulfilFeedWish() {
    mMonitorLock.lock();
    if (!mTellsFeed) {
        mTellsFeed = true;
        while (mFeedWish != FeedWish::NONE) {
            const FeedWish wish = std::exchange(mFeedWish, FeedWish::NONE);
            mMonitorLock.unlock();
            tellFeed(wish == FeedWish::REPORT);
            mMonitorLock.lock();
        }
        mTellsFeed = false;
    }
    mMonitorLock.unlock();
}

void HeatProcessCenter::tellFeed(bool report) {
    QuorixManager& feed = QuorixManager::getInstance();
    if (report) {
        feed.regCallBack();
        feed.startQuorix();
    } else {
        feed.stopQuorix();
    }
}
