// The ranking, the summary and the report.

#include "ambient/AmbientTempWatcher.h"
#include "base/DecisionObserver.h"
#include "base/Log.h"
#include "core/KelvoState.h"
#include "heat/HeatProcessCenter.h"

using android::Mutex;
using kelvo::HeatRanking;

namespace {

std::string entry(const std::string& name, int32_t value) {
    return name + ":" + std::to_string(value) + ",";
}

// °C; stands after the ambient component's own entry of the same name.
std::string ambientEntry() {
    return entry(componentName(AMBIENT), kelvo::AmbientTempWatcher::getInstance().getAmbientTemp());
}

/** Notes an answered question for the decision observer; without one it does nothing. */
class RankingRecord {
  public:
    explicit RankingRecord(HeatRanking::Question question) : mObserver(kelvo::decisionObserver()) {
        mRanking.question = question;
    }
    /** Called under the component lock, which keeps other queries from converting meanwhile. */
    void add(int32_t type, const ComponentHeat& component, int32_t heat) {
        if (mObserver == nullptr) {
            return;
        }
        mRanking.contributions.push_back({type, heat, component.lastConversion(), {}});
        if (heat > mMost) {
            mMost = heat;
            mRanking.mainComponent = type;
        }
    }
    /** Explains the contribution added last. */
    void explain(const std::map<std::string, int>& keyFactors) {
        if (mObserver != nullptr) {
            mRanking.contributions.back().keyFactors = keyFactors;
        }
    }
    /** Tells the observer; called without a lock. */
    void end() const {
        if (mObserver != nullptr) {
            mObserver->onHeatRanking(mRanking);
        }
    }

  private:
    kelvo::DecisionObserver* const mObserver;
    HeatRanking mRanking;
    int32_t mMost = -1;  // m°C
};

}  // namespace

ComponentHeat& HeatProcessCenter::componentLocked(int32_t type) {
    return *mComponents[static_cast<size_t>(type)];
}

bool HeatProcessCenter::isSilent() const {
    const bool silent = mInitInValid || !mRunning;
    if (silent) {
        KLOGD("heatpc getCompentsHeat mInitInValid");
    }
    return silent;
}

HeatProcessCenter::MainHeat HeatProcessCenter::getMainHeatCompent() {
    MainHeat best{-1, -1};
    if (mInitInValid) {
        return best;
    }
    RankingRecord record(HeatRanking::Question::MAIN);
    for (int32_t type = 0; type < kComponentTypes; ++type) {
        {
            Mutex::Autolock lock(mComponentsLock);
            ComponentHeat& component = componentLocked(type);
            const int32_t heat = component.getHeatContribution();
            record.add(type, component, heat);
            if (heat > best.heat) {
                best = {type, heat};
            }
        }
        KLOGE("heatpc getMainHeatCompent type: %d, value:%d", best.type, best.heat);
    }
    record.end();
    return best;
}

std::string HeatProcessCenter::getCompentsHeat() {
    if (isSilent()) {
        return {};
    }
    std::string text;
    Heats heats;
    RankingRecord record(HeatRanking::Question::TEXT);
    for (int32_t type = 0; type < kComponentTypes; ++type) {
        Mutex::Autolock lock(mComponentsLock);
        ComponentHeat& component = componentLocked(type);
        const int32_t heat = component.getHeatContribution();
        record.add(type, component, heat);
        text += entry(componentName(type), heat);
        heats[type] = heat;
    }
    record.end();
    KLOGE("heatpc getCompentsHeat %s", text.c_str());
    text += ambientEntry();
    updateHeatBigRawData(heats);
    return text;
}

std::string HeatProcessCenter::getCompentsHeatDetailInfo() {
    if (isSilent()) {
        return {};
    }
    Json::Value root(Json::objectValue);
    std::string text;
    Heats heats;
    RankingRecord record(HeatRanking::Question::DETAIL);
    for (int32_t type = 0; type < kComponentTypes; ++type) {
        std::shared_ptr<HeatInfo> info;
        {
            Mutex::Autolock lock(mComponentsLock);
            ComponentHeat& component = componentLocked(type);
            info = component.getOwnHeatInfo();
            record.add(type, component, info->heat);
        }
        mComponents[static_cast<size_t>(type)]->askForFactors(*info);
        record.explain(info->keyFactor);
        text += entry(componentName(type), info->heat);
        generateReportInfo(root, componentName(type), info);
        heats[type] = info->heat;
    }
    record.end();
    text += ambientEntry();
    text += "temp:" + std::to_string(KelvoState::getInstance().getTemp());
    KLOGE("heatpc getCompentsHeatDetailInfo:%s", text.c_str());
    updateHeatBigRawData(heats);
    return root.toStyledString();
}

void HeatProcessCenter::generateReportInfo(Json::Value& root, const std::string& name,
                                           const std::shared_ptr<HeatInfo>& info) {
    Mutex::Autolock lock(mReportLock);
    writeReport(root[name], *info);
}

void HeatProcessCenter::writeReport(Json::Value& report, const HeatInfo& info) {
    report["avgHeat"] = info.heat;
    if (info.keyFactorState != -1) {
        Json::Value& factors = report["keyFactor"] = Json::Value(Json::objectValue);
        for (const auto& [key, value] : info.keyFactor) {
            factors[key] = value;
        }
    }
}
