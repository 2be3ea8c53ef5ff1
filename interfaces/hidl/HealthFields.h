#pragma once

#include <android/hardware/health/2.0/types.h>

#include <concepts>
#include <tuple>
#include <type_traits>

// The fields of each structure in the order in which they lie in a parcel. One function serves
// reading and writing: T is the structure or its const form.

namespace android::hardware::health::V1_0 {

template <typename T>
requires std::same_as<std::remove_const_t<T>, HealthInfo>
auto fieldsOf(T& info) {
    return std::tie(info.chargerAcOnline, info.chargerUsbOnline, info.chargerWirelessOnline,
                    info.maxChargingCurrent, info.maxChargingVoltage, info.batteryStatus,
                    info.batteryHealth, info.batteryPresent, info.batteryLevel, info.batteryVoltage,
                    info.batteryTemperature, info.batteryCurrent, info.batteryCycleCount,
                    info.batteryFullCharge, info.batteryChargeCounter, info.batteryTechnology);
}

}  // namespace android::hardware::health::V1_0

namespace android::hardware::health::V2_0 {

template <typename T>
requires std::same_as<std::remove_const_t<T>, StorageAttribute>
auto fieldsOf(T& attribute) {
    return std::tie(attribute.isInternal, attribute.isBootDevice, attribute.name);
}

template <typename T>
requires std::same_as<std::remove_const_t<T>, StorageInfo>
auto fieldsOf(T& info) {
    return std::tie(info.attr, info.eol, info.lifetimeA, info.lifetimeB, info.version);
}

template <typename T>
requires std::same_as<std::remove_const_t<T>, DiskStats>
auto fieldsOf(T& stats) {
    return std::tie(stats.reads, stats.readMerges, stats.readSectors, stats.readTicks, stats.writes,
                    stats.writeMerges, stats.writeSectors, stats.writeTicks, stats.ioInFlight,
                    stats.ioTicks, stats.ioInQueue, stats.attr);
}

template <typename T>
requires std::same_as<std::remove_const_t<T>, HealthInfo>
auto fieldsOf(T& info) {
    return std::tie(info.legacy, info.batteryCurrentAverage, info.diskStats, info.storageInfos);
}

}  // namespace android::hardware::health::V2_0
