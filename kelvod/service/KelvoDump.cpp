// The standard dump request: a short report, and a roll-up of the day's records.

#include <errno.h>
#include <string.h>
#include <utils/String8.h>

#include <optional>

#include "base/Log.h"
#include "base/TimeUtils.h"
#include "base/Version.h"
#include "config/ConfigNames.h"
#include "config/ConfigVersion.h"
#include "config/KelvoConfig.h"
#include "config/PlatformAdaptor.h"
#include "core/DataCollector.h"
#include "core/KelvoMessages.h"
#include "core/KelvoState.h"
#include "core/MessageManager.h"
#include "service/DumpWriter.h"
#include "service/IKelvoService.h"
#include "service/PrivilegedCaller.h"

namespace kelvo {

namespace {

constexpr size_t kMostBytes = 2048;  // of what is written at once; the rest is cut off
constexpr char kBuildPlatform[] = "sys_mssi_64_cn_armv82";

void writeText(int fd, const std::string& text) {
    if (!writeForReader(fd, text.substr(0, kMostBytes))) {
        // In the same words for the report, as ever.
        KLOGE("write kelvo config file filed.(%s)", strerror(errno));
    }
}

std::optional<std::string> modelConfig() {
    Json::Value models;
    if (KelvoConfig::getInstance().getConfig(&models, {key::kFittingModels}) != 0) {
        KLOGE("no shell temp fitting model");
        return std::nullopt;
    }
    return "getKelvoConfig result:" + models.toStyledString() + "\n";
}

std::string celsiusText(float celsius) {
    char text[32];
    snprintf(text, sizeof(text), "%0.2f", static_cast<double>(celsius));
    return text;
}

std::string report() {
    const KelvoState& state = KelvoState::getInstance();
    return "Git version:" + std::string(kBuildVersion) + "\nConfig version:" + configVersion() +
           "\nBANDROID_VERSION:" + std::to_string(kAndroidApiLevel) +
           "\nBCOMPILE_PLATFORM:" + kBuildPlatform +
           "\nPlatform:" + PlatformAdaptor::getInstance().getPlatformName() +
           "\nTemp:" + celsiusText(state.getTempCelsius()) +
           "\nThrottlingLevel:" + std::to_string(state.getThermalThrottlingLevel()) +
           "\nTempDataCollection:\n" + state.getTempDataCollection().toStyledString() +
           "DataCollector:\n" + DataCollector::getInstance().asJson();
}

}  // namespace

android::status_t BnKelvoService::dump(int fd,
                                       const android::Vector<android::String16>& arguments) {
    if (!isPrivilegedCaller()) {
        return android::OK;  // an empty text
    }
    KelvoMessage message = messages::collectBigData(getLocalDay(), false);
    for (const android::String16& argument : arguments) {
        // The words may stand inside others: "unclear" clears as well.
        const std::string text = android::String8(argument).string();
        if (text.find("clear") != std::string::npos) {
            message.iValue = 1;
            break;
        }
        if (text.find("config") != std::string::npos) {
            if (const auto config = modelConfig()) {
                writeText(fd, *config);
                return android::OK;
            }
        }
    }
    KLOGD("dump message.iValue:%d", message.iValue);
    if (MessageManager::getInstance().hasRoom()) {
        MessageManager::getInstance().sendMessage(message);
    }
    writeText(fd, report());
    return android::OK;
}

}  // namespace kelvo
