#include "Skeleton.h"

#include <algorithm>
#include <string>
#include <string_view>

#include "Files.h"
#include "config/ConfigNames.h"
#include "thermalstatus/ThermalLevels.h"

namespace kelvoconf {

namespace {

namespace key = kelvo::key;

using Types = std::vector<std::string>;

// How vendors call what sits near the shell, the likeliest first.
constexpr std::string_view kShellWords[] = {"skin",  "shell", "battery", "board", "display", "lcd",
                                            "quiet", "xo",    "ntc",     "therm", "charge"};
constexpr size_t kMostZones = 4;  // of a model: more weights are hard to fit to a day's trace
constexpr size_t kMostBackups = 2;
constexpr int32_t kFirstThreshold = 36;  // °C, of level 1
constexpr int kLevelsAStatus = 3;

bool mentions(const std::string& type, std::string_view word) {
    std::string lower = type;
    std::ranges::transform(lower, lower.begin(), [](unsigned char c) { return std::tolower(c); });
    return lower.find(word) != std::string::npos;
}

/** The likeliest zones of the shell, or the first ones when none sounds like it. */
Types chooseZones(const std::vector<DeviceZone>& zones) {
    Types chosen;
    const auto choose = [&chosen](const DeviceZone& zone) {
        const bool isNew = std::ranges::find(chosen, zone.type) == chosen.end();
        if (zone.usable && isNew && chosen.size() < kMostZones) {
            chosen.push_back(zone.type);
        }
    };
    for (const std::string_view word : kShellWords) {
        for (const DeviceZone& zone : zones) {
            if (mentions(zone.type, word)) {
                choose(zone);
            }
        }
    }
    if (chosen.empty()) {
        std::ranges::for_each(zones, choose);
    }
    return chosen;
}

Json::Value arrayOf(const Types& types) {
    Json::Value array(Json::arrayValue);
    for (const std::string& type : types) {
        array.append(type);
    }
    return array;
}

Json::Value meanModel(int32_t index, const Types& types) {
    constexpr int kThousand = 1000;
    Json::Value model;
    model[key::kIndex] = index;
    model[key::kThermalZone] = arrayOf(types);
    Json::Value& coefficients = model[key::kCoefficient] = Json::Value(Json::arrayValue);
    // Three decimals, of which the last weight makes up the sum of 1.
    const auto count = static_cast<int>(types.size());
    for (int i = 0; i < count; ++i) {
        const int share = i + 1 < count ? kThousand / count : kThousand - kThousand / count * i;
        coefficients.append(share / static_cast<double>(kThousand));
    }
    coefficients.append(0);
    return model;
}

Json::Value scene(const Types& types) {
    Json::Value scene;
    int32_t index = 0;
    for (const char* name :
         {kelvo::model::kFront, kelvo::model::kBack, kelvo::model::kFrame, kelvo::model::kBoard}) {
        scene[key::kTempModel][name] = meanModel(index++, types);
    }
    return scene;
}

Json::Value levels() {
    Json::Value model;
    for (int level = 0; level < static_cast<int>(kelvo::kThermalLevels); ++level) {
        const int32_t rising = level == 0 ? kelvo::kWildcard : kFirstThreshold + level - 1;
        model[key::kTempThreshold].append(rising);
        model[key::kTempThresholdDown].append(level == 0 ? kelvo::kWildcard : rising - 1);
        model[key::kThermalStatus].append(level / kLevelsAStatus);
        model[key::kThermalStatusReport].append(level / kLevelsAStatus);
    }
    return model;
}

}  // namespace

Json::Value makeSkeleton(const std::vector<DeviceZone>& zones) {
    const Types types = chooseZones(zones);
    if (types.empty()) {
        throw Failure("no zone can be used: thermal zones");
    }
    Json::Value root;
    root[key::kConfigVersion] = "draft";
    root[key::kSpecifiedZones][key::kThermalZoneType] = arrayOf(types);
    root[key::kThermalStatusModel] = levels();
    Json::Value& scenes = root[key::kFittingModels];
    scenes[kelvo::scene::kDefault] = scene(types);
    // One zone each: whichever fails, another is left.
    for (size_t i = 0; types.size() > 1 && i < kMostBackups; ++i) {
        scenes[kelvo::scene::kBackupPrefix + std::to_string(i + 1)] = scene({types[i]});
    }
    return root;
}

}  // namespace kelvoconf
