#include "BenchPhone.h"

#include <fcntl.h>
#include <unistd.h>

#include <array>

#include "sim/scenario/PhonePaths.h"
#include "sim/tree/DeviceTree.h"

namespace bench {

namespace {

constexpr int32_t kZonesPerModel = kZones / kModels;

const std::vector<sim::NodeChange> kHeatNodes = {
        {"/sys/class/kgsl/kgsl-3d0/devfreq/gpu_load", "50"},
        {"/sys/class/kgsl/kgsl-3d0/gpuclk", "450000000"},
        {"/sys/class/backlight/panel0-backlight/brightness", "1024"},
};

std::string model(int32_t index) {
    std::string zones;
    std::string coefficients;
    for (int32_t i = 0; i < kZonesPerModel; ++i) {
        zones += "\"zone" + std::to_string(index * kZonesPerModel + i) + "\",";
        coefficients += "0.2,";
    }
    zones.pop_back();
    return "\"model" + std::to_string(index) + "\":{\"index\":" + std::to_string(index) +
           ",\"thermal_zone\":[" + zones + "],\"coefficient\":[" + coefficients + "4000]}";
}

}  // namespace

sim::Scenario phone() {
    sim::Scenario scenario;
    scenario.name = "bench";
    scenario.durationMs = 1'000'000'000;
    scenario.properties["persist.sys.kelvo.enable"] = "1";
    scenario.properties["persist.sys.kelvo.loglevel"] = "-1";
    scenario.nodes.push_back({"/sys/devices/soc0/soc_id", "457\n"});
    scenario.nodes.push_back({"/sys/devices/soc0/raw_version", "2\n"});
    std::string models;
    for (int32_t i = 0; i < kModels; ++i) {
        models += (i == 0 ? "" : ",") + model(i);
    }
    for (int32_t i = 0; i < kZones; ++i) {
        scenario.zones.push_back({"zone" + std::to_string(i), 40000});
    }
    scenario.config.main =
            "{\"thermal_status_model\":{\"temp_threshold_down\":[]},"
            "\"shell_temp_fitting_model\":{\"default\":{\"temp_model\":{" +
            models + "}}}}";
    return scenario;
}

sim::Scenario heatedPhone() {
    sim::Scenario scenario = phone();
    scenario.nodes.insert(scenario.nodes.end(), kHeatNodes.begin(), kHeatNodes.end());
    scenario.config.main->insert(
            scenario.config.main->rfind("}}"),
            ",\"heatsource_detection\":{\"heatsource_model\":{\"device_name\":[\"cpu\",\"gpu\"],"
            "\"coefficient\":[0.2,0.05]},\"gpu_model\":{\"gpufreq\":[300,600],"
            "\"powermA\":[100,250]}}");
    return scenario;
}

std::string taskStatistics(int threads) {
    std::string text;
    for (int i = 0; i < threads; ++i) {
        text += "1\t" + std::to_string(i) + "\t5000\tt\n";
    }
    return text;
}

int64_t readNodes(const std::vector<std::string>& hostPaths) {
    std::array<char, 128> buffer;
    int64_t bytes = 0;
    for (const std::string& path : hostPaths) {
        const int fd = open(path.c_str(), O_RDONLY | O_CLOEXEC);
        bytes += read(fd, buffer.data(), buffer.size() - 1);
        close(fd);
    }
    return bytes;
}

std::vector<std::string> zonePaths(const std::string& root) {
    std::vector<std::string> paths;
    for (int32_t i = 0; i < kZones; ++i) {
        paths.push_back(root + sim::zonePath(i, "temp"));
    }
    return paths;
}

std::vector<std::string> heatNodePaths(const std::string& root) {
    std::vector<std::string> paths;
    for (const sim::NodeChange& node : kHeatNodes) {
        paths.push_back(root + node.path);
    }
    return paths;
}

}  // namespace bench
