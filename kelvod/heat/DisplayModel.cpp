#include "heat/DisplayModel.h"

#include <stdlib.h>

#include <string>

#include "base/FileUtils.h"
#include "base/Log.h"
#include "base/Numeric.h"
#include "config/PlatformAdaptor.h"
#include "links/GlobalFrames.h"

ANDROID_SINGLETON_STATIC_INSTANCE(DisplayModel)

using android::sp;
using kelvo::saturatingInt32;
using vendor::zenta::hardware::displaypanelfeature::V1_0::IDisplayPanelFeature;

namespace {

constexpr char kLevelNode[] = "/sys/class/backlight/panel0-backlight/brightness";
constexpr char kMaxLevelNode[] = "/sys/class/backlight/panel0-backlight/max_brightness";
constexpr unsigned int kLevelId = 29;
constexpr unsigned int kMaxLevelId = 33;

constexpr int kNoPanelService = -19;
constexpr int kUnreadable = 1;
constexpr int kOutOfRange = 2;
constexpr int kLargestLevel = 10240;
constexpr int kFallbackMaxLevel = 1;
constexpr int kFallbackLevel = 150;  // a broken node must not look like a dark screen

// Panels with a range of high brightness: a straight line below it, another one within.
constexpr int kHighRangeMax = 10239;
constexpr int kHighRangeStart = 8192;
constexpr int kHighRangeNits = 460;                   // at its start
constexpr float kHighRangeSpan = 320.0F;              // nits from there to the maximum
constexpr float kPerHighRangeLevel = 0.00048828125F;  // 1 / 2048 levels
constexpr float kNitsPerLevel = 0.05F;
constexpr float kLowestLevel = 2.0F;
constexpr float kLowestNits = 2.108F;

constexpr size_t kDdicEntries = 3;
constexpr int kLargestFps = 120;
constexpr float kNoDdicPower = -1.0F;
constexpr float kOddFpsPower = 70.0F;  // mW
constexpr int kFramesPerUnit = 1000;   // the compositor counts thousandths of a frame

int toLevel(const std::string& text) {
    return kelvo::clampToInt32(strtoll(text.c_str(), nullptr, 10));
}

/** Asks the compositor's counter; whole frames. */
int framesPerSecond() {
    return kelvo::getGlobalFrames() / kFramesPerUnit;
}

bool usesNodes() {
    return kelvo::PlatformAdaptor::getInstance().isQcom();
}

int highRangeNits(int level) {
    if (level >= kHighRangeStart) {
        const auto above = static_cast<float>(level - (kHighRangeStart - 1));
        return saturatingInt32(above * kHighRangeSpan * kPerHighRangeLevel) + kHighRangeNits;
    }
    return saturatingInt32((static_cast<float>(level) - kLowestLevel) * kNitsPerLevel +
                           kLowestNits);
}

}  // namespace

DisplayModel::DisplayModel() {
    init();
}

void DisplayModel::init() {
    KLOGD("displayComp DisplayModel()\n");
    KLOGD("displayComp DisplayConfig()\n");
    mConfig.init();
    mBrightness = saturatingInt32(mConfig.stanBrightness());
    mStanLevel = mConfig.stanLevel();
    mConfig.getElConf(mElConf);
    const auto& [nits, power] = *mElConf.begin();
    mCoeff = power / static_cast<float>(nits);
    mMaxBrightness = getMaxBrightness();
    mConfig.getDdicConf(mDdicConf);
    if (mDdicConf.size() < kDdicEntries) {
        KLOGE("displayComp ddicConf init failed");
    }
    KLOGD("displayComp DisplayModel : mBrightness %d , mMaxBrightness %d, coeff %f", mBrightness,
          mMaxBrightness.load(), static_cast<double>(mCoeff));
}

int DisplayModel::getMaxBrightness() {
    KLOGD("displayComp Config::getMaxBrightness()\n");
    return usesNodes() ? readMaxBrightness() : getValFromPanelService(kMaxLevelId);
}

int DisplayModel::readMaxBrightness() {
    const std::string text = kelvo::getFile(kMaxLevelNode);
    if (text.empty()) {
        KLOGE("displayComp Read file(%s) failed!", kMaxLevelNode);
        return kFallbackMaxLevel;
    }
    const int maximum = toLevel(text);
    mMaxBrightness = maximum;
    KLOGD("displayComp Backlight Node : %s, max brightness : %d\n", kMaxLevelNode, maximum);
    return maximum;
}

int DisplayModel::getBrightness(int& level) {
    if (!usesNodes()) {
        level = getValFromPanelService(kLevelId);
        return 0;
    }
    const std::string text = kelvo::getFile(kLevelNode);
    if (text.empty()) {
        KLOGE("displayComp Read file(%s) failed!", kLevelNode);
        return kUnreadable;
    }
    const int value = toLevel(text);
    if (value < 0 || value > kLargestLevel) {
        KLOGE("displayComp Backlight Node(%s) brightness %d is abnormal", kLevelNode, value);
        return kOutOfRange;
    }
    level = value;
    KLOGD("displayComp Backlight Node : %s, brightness : %d\n", kLevelNode, level);
    return 0;
}

int DisplayModel::convBr2Nit(int level) const {
    const int maximum = mMaxBrightness;
    KLOGD("displayComp convBr2Nit: curBrLevel : %d, Coeff : %f, mMaxBrightness %d", level,
          static_cast<double>(mCoeff), maximum);
    if (maximum == kHighRangeMax) {
        const int nits = highRangeNits(level);
        KLOGD("displayComp compNit curBrLevel : %d, int : %d", level, nits);
        return nits;
    }
    return saturatingInt32(static_cast<float>(level) / static_cast<float>(mStanLevel) *
                           static_cast<float>(mBrightness));
}

float DisplayModel::compDdicPower(int fps) const {
    KLOGD("displayComp compDdicPower : mFps %d\n", fps);
    if (fps < 0 || fps > kLargestFps) {
        KLOGE("displayComp getPower failed invalid curFps");
        return kOddFpsPower;
    }
    // The first rate above, not the nearest: the highest rate itself has no power.
    for (const auto& [rate, power] : mDdicConf) {
        KLOGD("displayComp it->first: %d  it->second: %f\n", rate, static_cast<double>(power));
        if (rate > fps) {
            return power;
        }
    }
    return kNoDdicPower;
}

float DisplayModel::getDisplayPower() {
    const int fps = framesPerSecond();
    int level = 0;
    if (getBrightness(level) != 0) {
        level = kFallbackLevel;
    } else if (level == 0) {
        return 0.0F;
    }
    const int nits = convBr2Nit(level);
    KLOGD("displayComp compElPower curBrLevel : %d, Nit : %d, Coeff : %f", level, nits,
          static_cast<double>(mCoeff));
    const float power = mCoeff * static_cast<float>(nits) + compDdicPower(fps);
    KLOGD("displayComp getDisplayPower, curBrLevel:%d, curFps:%d, power:%f\n", level, fps,
          static_cast<double>(power));
    return static_cast<float>(saturatingInt32(power));
}

int DisplayModel::checkPanelService() {
    return panel() != nullptr ? 0 : mCaller.ask(kNoPanelService, [this] { return findPanel(); });
}

int DisplayModel::findPanel() {
    // Not getService(), which would hold up sampling until a HAL that was declared comes up.
    const sp<IDisplayPanelFeature> found = IDisplayPanelFeature::tryGetService("default");
    if (found == nullptr) {
        KLOGE("displayComp [%s], Get display service filed.", "checkPanelService");
        return kNoPanelService;
    }
    KLOGD("displayComp [%s], Get display service success.", "checkPanelService");
    const android::Mutex::Autolock lock(mMutex);
    mPanel = found;
    return 0;
}

sp<IDisplayPanelFeature> DisplayModel::panel() {
    const android::Mutex::Autolock lock(mMutex);
    return mPanel;
}

/** A HAL that is gone is looked for again by the next query. */
void DisplayModel::dropPanel(const sp<IDisplayPanelFeature>& panel) {
    const android::Mutex::Autolock lock(mMutex);
    if (mPanel == panel) {
        mPanel = nullptr;
    }
}

DisplayModel::PanelValue DisplayModel::askPanel(const sp<IDisplayPanelFeature>& service,
                                                unsigned int id) {
    PanelValue value;
    const auto result = service->getDisplayPanelFeatureValue(
            id, [&](int32_t status, const android::hardware::hidl_vec<uint8_t>& bytes) {
                if (status >= 0 && bytes.size() > 0) {
                    value = bytes[0];
                }
            });
    if (result.isDeadObject()) {
        dropPanel(service);
    }
    return value;
}

int DisplayModel::getValFromPanelService(unsigned int id) {
    if (checkPanelService() != 0) {
        return 0;
    }
    const sp<IDisplayPanelFeature> service = panel();
    if (service == nullptr) {
        return 0;  // another query has just found it gone
    }
    const PanelValue answer =
            mCaller.ask(PanelValue(), [this, service, id] { return askPanel(service, id); });
    const int value = answer.value_or(0);
    // These are the words for every value, also for the level.
    if (answer) {
        KLOGD("displayComp [%s], Get max brightness from service success:%d.", __func__, value);
    } else {
        KLOGE("displayComp [%s], Get max brightness from service failed.", __func__);
    }
    return value;
}
