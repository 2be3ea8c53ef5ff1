#include "config/ChipNodes.h"

#include <stdlib.h>

namespace kelvo {

ChipSource findChipSource(const std::function<bool(const char* path)>& exists) {
    if (exists(kChipRecordNode)) {
        return ChipSource::MTK_RECORD;
    }
    return exists(kChipFolder) ? ChipSource::MTK_FOLDER : ChipSource::QCOM;
}

std::optional<ChipNumbers> readChipNumbers(
        ChipSource source, const std::function<std::string(const char* path)>& read) {
    const bool isQcom = source == ChipSource::QCOM;
    const std::string id = read(isQcom ? "/sys/devices/soc0/soc_id" : "/proc/chip/hw_code");
    if (id.empty()) {
        return std::nullopt;
    }
    const std::string version =
            read(isQcom ? "/sys/devices/soc0/raw_version" : "/proc/chip/hw_subcode");
    if (version.empty()) {
        return std::nullopt;
    }
    const auto number = [base = isQcom ? 10 : 16](const std::string& text) {
        return static_cast<int32_t>(strtol(text.c_str(), nullptr, base));
    };
    return ChipNumbers{number(id), number(version)};
}

}  // namespace kelvo
