#pragma once

#include <cstddef>
#include <cstdint>

#include "HubProtocol.h"

/** What one user, one process, or a chain of calls may take of the hub. */
namespace binderhub {

constexpr size_t kMaxProcesses = 4096;
constexpr size_t kMaxProcessesOfUid = 64;      ///< of a user other than root and the hub's own
constexpr size_t kMaxConnectionsOfUid = 1024;  ///< likewise: its processes and their threads
constexpr size_t kMaxThreads = 1024;           ///< of a process
constexpr size_t kMaxNodes = 32 * 1024;        ///< of a process
constexpr size_t kMaxHandles = 32 * 1024;      ///< of a process
constexpr size_t kMaxDeaths = kMaxHandles;     ///< notices that a process asked for and has not had

/** Results of its own commands that a thread has not read yet. */
constexpr size_t kMaxUnreadResults = 4096;

/** Two-way calls within two-way calls. */
constexpr uint32_t kMaxCallDepth = 1000;

/** Descriptors on their way to one process. */
constexpr size_t kMaxHeldDescriptors = 1024;

/** What a buffer costs beside its content, so that empty ones are bounded as well (bytes). */
constexpr size_t kBufferOverhead = 64;

/** Longest payload that a message may bring: data and offsets, each as long as a buffer (bytes). */
constexpr size_t kMaxPayload = 2 * kBufferSpace;

/** Descriptors of the hub that neither connections nor transactions may take. */
constexpr int kReservedDescriptors = 320;

}  // namespace binderhub
