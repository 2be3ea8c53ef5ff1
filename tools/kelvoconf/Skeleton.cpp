#include "Skeleton.h"

#include <algorithm>
#include <array>
#include <cctype>
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
constexpr std::string_view kShellWords[] = {"skin",    "shell", "front",   "back",  "frame",
                                            "battery", "board", "display", "lcd",   "quiet",
                                            "xo",      "ntc",   "therm",   "charge"};
// Sensors of a laboratory on the shell itself, which a phone on sale lacks.
constexpr std::string_view kLabPrefix = "lab-";
constexpr const char* kModels[] = {kelvo::model::kFront, kelvo::model::kBack, kelvo::model::kFrame,
                                   kelvo::model::kBoard};
constexpr size_t kMostZones = 4;  // of a model: more weights are hard to fit to a day's trace
constexpr size_t kMostBackups = 2;
constexpr int32_t kFirstThreshold = 36;  // °C, of level 1
constexpr int kLevelsAStatus = 3;

bool isModel(std::string_view word) {
    return std::ranges::find(kModels, word) != std::end(kModels);
}

bool isLetter(char c) {
    return std::isalpha(static_cast<unsigned char>(c)) != 0;
}

/** Models are words by themselves: "back-ntc" speaks of the back, "backlight" does not. */
bool mentions(const std::string& type, std::string_view word) {
    std::string lower = type;
    std::ranges::transform(lower, lower.begin(), [](unsigned char c) { return std::tolower(c); });
    const size_t at = lower.find(word);
    if (at == std::string::npos || lower.starts_with(kLabPrefix)) {
        return false;
    }
    const size_t end = at + word.size();
    const bool stands =
            (at == 0 || !isLetter(lower[at - 1])) && (end == lower.size() || !isLetter(lower[end]));
    return stands || !isModel(word) || word == kelvo::model::kBoard;
}

/** The first zones that speak of one of the words, those of an earlier word first. */
template <typename Words>
Types zonesNamed(const Types& types, const Words& words) {
    Types named;
    for (const auto& word : words) {
        for (const std::string& type : types) {
            const bool isNew = std::ranges::find(named, type) == named.end();
            if (isNew && named.size() < kMostZones && mentions(type, word)) {
                named.push_back(type);
            }
        }
    }
    return named;
}

/** The types that can be used, each once. */
Types usableTypes(const std::vector<DeviceZone>& zones) {
    Types types;
    for (const DeviceZone& zone : zones) {
        if (zone.usable && std::ranges::find(types, zone.type) == types.end()) {
            types.push_back(zone.type);
        }
    }
    return types;
}

/** The likeliest zones of the shell, or the first ones when none sounds like it. */
Types chooseZones(const Types& usable) {
    const Types chosen = zonesNamed(usable, kShellWords);
    return !chosen.empty()
                   ? chosen
                   : Types(usable.begin(), usable.begin() + static_cast<std::ptrdiff_t>(std::min(
                                                                    usable.size(), kMostZones)));
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

/** Each model a mean of the zones that are named after it, or else of those for all. */
Json::Value defaultScene(const Types& usable, const Types& chosen) {
    Json::Value scene;
    int32_t index = 0;
    for (const char* name : kModels) {
        const Types own = zonesNamed(usable, std::array{name});
        scene[key::kTempModel][name] = meanModel(index++, own.empty() ? chosen : own);
    }
    return scene;
}

Json::Value backupScene(const std::string& type) {
    return defaultScene({}, {type});
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
    const Types usable = usableTypes(zones);
    const Types types = chooseZones(usable);
    if (types.empty()) {
        throw Failure("no zone can be used: thermal zones");
    }
    Json::Value root;
    root[key::kConfigVersion] = "draft";
    root[key::kSpecifiedZones][key::kThermalZoneType] = arrayOf(types);
    root[key::kThermalStatusModel] = levels();
    Json::Value& scenes = root[key::kFittingModels];
    scenes[kelvo::scene::kDefault] = defaultScene(usable, types);
    // One zone each: whichever fails, another is left.
    for (size_t i = 0; types.size() > 1 && i < kMostBackups; ++i) {
        scenes[kelvo::scene::kBackupPrefix + std::to_string(i + 1)] = backupScene(types[i]);
    }
    return root;
}

}  // namespace kelvoconf
