#include <iostream>
#include <string>
#include <vector>

#include "Commands.h"
#include "DeviceZones.h"
#include "Files.h"
#include "JsonLayout.h"
#include "Skeleton.h"
#include "TextTable.h"

namespace kelvoconf {

namespace {

std::string joined(const std::vector<std::string>& remarks) {
    std::string text;
    for (const std::string& remark : remarks) {
        text += (text.empty() ? "" : "; ") + remark;
    }
    return text;
}

std::string tableOf(const std::vector<DeviceZone>& zones) {
    TextTable table({"zone", "type", "sample, m°C", "remarks"});
    for (const DeviceZone& zone : zones) {
        table.add({std::to_string(zone.index), zone.type,
                   zone.sample ? std::to_string(*zone.sample) : "", joined(zone.remarks)});
    }
    return table.text();
}

std::string jsonLinesOf(const std::vector<DeviceZone>& zones) {
    std::string text;
    for (const DeviceZone& zone : zones) {
        Json::Value remarks(Json::arrayValue);
        for (const std::string& remark : zone.remarks) {
            remarks.append(remark);
        }
        text += R"({"index":)" + std::to_string(zone.index) + R"(,"type":)" +
                compactJson(zone.type) + R"(,"sample":)" +
                (zone.sample ? std::to_string(*zone.sample) : "null") + R"(,"remarks":)" +
                compactJson(remarks) + "}\n";
    }
    return text;
}

void warnOfGap(const std::string& root, size_t count) {
    const std::vector<int32_t> missed = zonesAfterGap(root, static_cast<int32_t>(count));
    if (!missed.empty()) {
        warn("the daemon stops at the missing zone " + std::to_string(count) +
                     " and does not find zone " + std::to_string(missed.front()),
             root);
    }
}

}  // namespace

void draftCommand(const DraftOptions& options) {
    useDeviceRoot(options.root);
    const std::vector<DeviceZone> zones = readDeviceZones();
    warnOfGap(options.root, zones.size());
    const std::string list = options.json ? jsonLinesOf(zones) : tableOf(zones);
    if (options.zonesOnly) {
        writeOutput("-", list);
        return;
    }
    // The skeleton alone goes to standard output, so that it can be piped.
    if (options.output.empty() || options.output == "-") {
        std::cerr << list;
        writeOutput("-", configJson(makeSkeleton(zones)));
    } else {
        writeOutput("-", list);
        writeOutput(options.output, configJson(makeSkeleton(zones)));
    }
}

}  // namespace kelvoconf
