#pragma once

#include <cstdint>

/**
 * What getInterfaceVersion and getInterfaceHash of the performance service answer on a phone, where
 * a newer aidl compiler makes both methods. Our compiler cannot: for simulated services.
 */
constexpr int32_t kPerformanceVersion = 1;
constexpr const char* kPerformanceHash = "55d9d969efe02fea90db3b80ee665f8db51c2743";
