#include "sim/tree/PlantLoad.h"

#include <algorithm>

#include "base/Numeric.h"

namespace sim {

namespace {

constexpr double kSamplingMs = 5000;
constexpr double kMilli = 1000;
// A governor raises the clock before the load reaches 100 %.
constexpr double kFullEnough = 0.9;
constexpr int32_t kPercent = 100;
constexpr int32_t kLargestByte = 255;

double sourcePower(const Plant& plant, int32_t source) {
    return std::max(plant.sourcePower(static_cast<size_t>(source)), 0.0);
}

const PlantParams::Gpu::Level& levelFor(const PlantParams::Gpu& gpu, double power) {
    const auto found = std::ranges::find_if(
            gpu.levels, [power](const auto& level) { return power <= level.power * kFullEnough; });
    return found != gpu.levels.end() ? *found : gpu.levels.back();
}

}  // namespace

std::string taskStatistics(const Plant& plant) {
    std::string text;
    for (const auto& thread : plant.params().threads) {
        const double watts = sourcePower(plant, thread.source) * thread.share;
        text += std::to_string(thread.pid) + "\t" + std::to_string(thread.tid) + "\t" +
                std::to_string(kelvo::saturatingInt32(watts * kMilli * kSamplingMs)) + "\t" +
                thread.name + "\n";
    }
    return text;
}

std::vector<NodeChange> gpuNodes(const Plant& plant, bool qcom) {
    const auto& gpu = plant.params().gpu;
    if (!gpu) {
        return {};
    }
    const double power = sourcePower(plant, gpu->source);
    const auto& level = levelFor(*gpu, power);
    const int32_t load =
            std::min(kelvo::saturatingInt32(power * kPercent / level.power + 0.5), kPercent);
    const std::string loadText = std::to_string(load);
    const std::string clockText = std::to_string(level.clock);
    if (qcom) {
        return {{"/sys/class/kgsl/kgsl-3d0/devfreq/gpu_load", loadText},
                {"/sys/class/kgsl/kgsl-3d0/gpuclk", clockText + "000000"}};
    }
    return {{"/sys/module/ged/parameters/gpu_loading",
             loadText + " 0 " + std::to_string(kPercent - load)},
            {"/sys/kernel/ged/hal/current_freqency", clockText + " 0"}};
}

std::optional<Panel> backlight(const Plant& plant) {
    const auto& panel = plant.params().backlight;
    if (!panel) {
        return std::nullopt;
    }
    const double above = sourcePower(plant, panel->source) - panel->dark;
    const double part = above / (panel->full - panel->dark);
    const int32_t level = kelvo::saturatingInt32(part * panel->maximum + 0.5);
    return Panel{panel->maximum, above > 0 ? std::clamp(level, 1, panel->maximum) : 0};
}

std::vector<NodeChange> backlightNodes(const Plant& plant, bool qcom) {
    const auto panel = qcom ? backlight(plant) : std::nullopt;
    if (!panel) {
        return {};
    }
    const std::string folder = "/sys/class/backlight/panel0-backlight/";
    return {{folder + "max_brightness", std::to_string(*panel->max)},
            {folder + "brightness", std::to_string(*panel->level)}};
}

std::optional<Panel> panelAnswers(const Plant& plant, bool qcom) {
    auto panel = qcom ? std::nullopt : backlight(plant);
    if (panel) {
        panel->max = std::min(*panel->max, kLargestByte);
        panel->level = std::min(*panel->level, kLargestByte);
    }
    return panel;
}

}  // namespace sim
