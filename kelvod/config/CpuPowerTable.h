#pragma once

#include <json/value.h>

#include <istream>

namespace kelvo {

/**
 * Reads an operating-point table of MediaTek's kernel into members of `out` (an object or null):
 * after two lines of heading, "… (KEY, VALUE) …" a line. Other lines are skipped, and of a repeated
 * key the last value stays. 0 when there was an entry, else -1. Pure.
 */
int parseCpuPowerTable(std::istream& in, Json::Value& out);

}  // namespace kelvo
