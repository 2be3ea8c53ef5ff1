#include "config/ConfigVersion.h"

#include "base/Log.h"
#include "config/KelvoConfig.h"

namespace kelvo {

std::string configVersion() {
    Json::Value version;
    if (KelvoConfig::getInstance().getConfig(&version, {"config_version"}) != 0 ||
        !version.isConvertibleTo(Json::stringValue)) {
        KLOGD("no config_version");
        return "noversion";
    }
    return version.asString();
}

}  // namespace kelvo
