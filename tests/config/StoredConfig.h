#pragma once

#include <string>

#include "sim/DeviceTree.h"

inline constexpr char kOriginConfig[] = "/system_ext/etc/kelvo/kelvo.conf";
inline constexpr char kDataConfig[] = "/data/zenta_lib/kelvo.conf";
inline constexpr char kSubConfig[] = "/system_ext/etc/kelvo/kelvo_SM8450.conf";

/** The device tree of the test's own phone. */
sim::DeviceTree phone();

/** Writes a file of the phone with its modification time in seconds since the epoch. */
void setFile(const std::string& path, const std::string& bytes, time_t mtime);
/** The same for a JSON text, which is stored encrypted. */
void storeConfig(const std::string& path, const std::string& json, time_t mtime);

/** Encrypts whole blocks, whatever they hold. */
std::string encryptBlocks(const std::string& plain);
/** Four bytes, little-endian. */
std::string littleEndian(uint32_t number);
