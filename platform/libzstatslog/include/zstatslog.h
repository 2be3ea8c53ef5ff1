#pragma once

#include <cstdint>

/** The framework's statistics service. */
namespace ZentaFramework {

/**
 * Hands over one record. On Linux it becomes a line of data/zstats/atoms.jsonl below KELVO_ROOT:
 * {"id":100001,"text":"front:34500,","value":34500}. Thread-safe; 0, or a negative errno when the
 * line could not be written.
 */
int stats_write(int32_t atomId, const char* text, int32_t value);

}  // namespace ZentaFramework
