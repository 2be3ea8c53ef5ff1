#include "config/ConfigVersion.h"

#include "base/Log.h"
#include "config/ConfigNames.h"
#include "config/KelvoConfig.h"

namespace kelvo {

std::string configVersion() {
    Json::Value version;
    if (KelvoConfig::getInstance().getConfig(&version, {key::kConfigVersion}) != 0 ||
        !version.isConvertibleTo(Json::stringValue)) {
        KLOGD("no config_version");
        return kNoVersion;
    }
    return version.asString();
}

}  // namespace kelvo
