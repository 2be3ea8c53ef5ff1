#pragma once

#include <utime.h>

#include <string>

#include "common/ConfigStore.h"
#include "support/Phone.h"

inline constexpr char kOriginConfig[] = "/system_ext/etc/kelvo/kelvo.conf";
inline constexpr char kDataConfig[] = "/data/zenta_lib/kelvo.conf";
inline constexpr char kSubConfig[] = "/system_ext/etc/kelvo/kelvo_SM8450.conf";

/** Writes a file of the phone with its modification time in seconds since the epoch. */
inline void setFile(const std::string& path, const std::string& bytes, time_t mtime) {
    phone().setNode(path, bytes);
    const utimbuf times{mtime, mtime};
    utime(phone().hostPath(path).c_str(), &times);
}

/** The same for a JSON text, which is stored encrypted. */
inline void storeConfig(const std::string& path, const std::string& json, time_t mtime) {
    setFile(path, common::encryptConfig(json), mtime);
}
