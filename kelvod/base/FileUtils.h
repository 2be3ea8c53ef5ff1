#pragma once

#include <cstdint>
#include <string>

namespace kelvo {

/** MediaTek's chip-id record, as the kernel node holds it (five little-endian words). */
struct tag_chipid {
    uint32_t size;
    uint32_t hw_code;
    uint32_t hw_subcode;
    uint32_t hw_ver;
    uint32_t sw_ver;
};

/**
 * Text of a kernel node: at most its first 127 bytes, up to the first zero byte, nothing trimmed.
 * Empty on any failure. The path is the phone's own; the device root is put before it here, as in
 * the two functions below. Thread-safe, as all of them.
 */
std::string getFile(const std::string& path);

/** Writes `content` in one call to an existing node. 0, or -1; never creates or truncates. */
int writeFile(const std::string& path, const std::string& content);

/** Reads the chip-id record; a node that cannot be opened leaves `record` untouched. */
int getMtkChipVersion(const std::string& path, tag_chipid& record);

}  // namespace kelvo
