#pragma once

#include <android/hardware/health/1.0/types.h>
#include <hidl/HidlSupport.h>

#include <cstdint>

namespace android::hardware::health::V2_0 {

enum class Result : int32_t {
    SUCCESS = 0,
    NOT_SUPPORTED = 1,
    UNKNOWN = 2,
    NOT_FOUND = 3,
    /** The client that registered a callback has ended. */
    CALLBACK_DIED = 4,
};

/** Which storage device. */
struct StorageAttribute {
    bool isInternal = false;
    bool isBootDevice = false;
    hidl_string name;

    bool operator==(const StorageAttribute&) const = default;
};

/** The wear of a storage device, as its own registers tell it. */
struct StorageInfo {
    StorageAttribute attr;
    uint16_t eol = 0;
    uint16_t lifetimeA = 0;
    uint16_t lifetimeB = 0;
    hidl_string version;

    bool operator==(const StorageInfo&) const = default;
};

/** The traffic of a storage device since boot; ticks are ms. */
struct DiskStats {
    uint64_t reads = 0;
    uint64_t readMerges = 0;
    uint64_t readSectors = 0;
    uint64_t readTicks = 0;
    uint64_t writes = 0;
    uint64_t writeMerges = 0;
    uint64_t writeSectors = 0;
    uint64_t writeTicks = 0;
    uint64_t ioInFlight = 0;
    uint64_t ioTicks = 0;
    uint64_t ioInQueue = 0;
    StorageAttribute attr;

    bool operator==(const DiskStats&) const = default;
};

struct HealthInfo {
    V1_0::HealthInfo legacy;
    int32_t batteryCurrentAverage = 0;  // µA
    hidl_vec<DiskStats> diskStats;
    hidl_vec<StorageInfo> storageInfos;

    bool operator==(const HealthInfo&) const = default;
};

}  // namespace android::hardware::health::V2_0
