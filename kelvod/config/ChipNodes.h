#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>

namespace kelvo {

/** MediaTek's chip record (tag_chipid) in the device tree. */
inline constexpr char kChipRecordNode[] = "/proc/device-tree/chosen/atag,chipid";
/** What a MediaTek phone without that record has. */
inline constexpr char kChipFolder[] = "/proc/chip";

/** Where a phone says which chip it has. */
enum class ChipSource { MTK_RECORD, MTK_FOLDER, QCOM };

/**
 * By the first of the two paths above for which `exists` is true; a Qualcomm phone has neither.
 * Pure.
 */
ChipSource findChipSource(const std::function<bool(const char* path)>& exists);

struct ChipNumbers {
    int32_t id = 0;
    int32_t version = 0;
};

/**
 * The numbers in the nodes of MTK_FOLDER or QCOM, whose texts `read` gives; none when one is empty.
 * Pure.
 */
std::optional<ChipNumbers> readChipNumbers(
        ChipSource source, const std::function<std::string(const char* path)>& read);

}  // namespace kelvo
