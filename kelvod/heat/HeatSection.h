#pragma once

#include "config/ConfigNames.h"
#include "config/KelvoConfig.h"

namespace kelvo {

/** Reads a section of "heatsource_detection"; as KelvoConfig::getConfig(). */
inline int readHeatSection(Json::Value* section, const char* name) {
    return KelvoConfig::getInstance().getConfig(section,
                                                {key::kFittingModels, key::kHeatDetection, name});
}

}  // namespace kelvo
