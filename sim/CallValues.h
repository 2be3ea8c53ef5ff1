#pragma once

#include <limits>
#include <memory>
#include <vector>

// The binder headers need the standard ones above.
#include <binder/Parcel.h>
#include <json/value.h>

#include "sim/Scenario.h"

namespace sim {

/** The descriptor of the service "kelvo", which its requests begin with. */
constexpr char kServiceDescriptor[] = "com.zenta.kelvo.IKelvoService";

/** Writes the argument of a call; a listener is written as the null binder. */
void writeArgument(const Argument& argument, android::Parcel& request);

/**
 * The next value of a reply, as events show it: the code of an exception header, an array for a
 * vector, null when the reply lacks the value.
 */
Json::Value readReplyValue(const android::Parcel& reply, ReplyType type);

}  // namespace sim
