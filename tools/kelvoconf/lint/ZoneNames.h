#pragma once

#include <cstdint>
#include <limits>
#include <string>

#include "kelvoconf/lint/Rules.h"

namespace kelvo::lint {

/** What is wrong with the name or number of a zone that the daemon does not find. */
struct ZoneAdvice {
    std::string what;
    std::string mend;
};

ZoneAdvice adviseOnZone(const LintContext& context, const Json::Value& zone);

/** A table that finds every type a document names: for documents without a phone. */
ZoneTable zonesNamedIn(const Json::Value& root);
/** Zones have any number then, too. */
inline constexpr int32_t kAnyZoneCount = std::numeric_limits<int32_t>::max();

/** Warns when several zones of the phone have the type. */
void checkShared(const LintContext& context, const ConfigNode& zone);

}  // namespace kelvo::lint
