#pragma once

#include <binder/Parcel.h>
#include <json/value.h>

#include <vector>

#include "client/CallTypes.h"

namespace client {

/** The descriptor of the service "kelvo", which its requests begin with. */
constexpr char kServiceDescriptor[] = "com.zenta.kelvo.IKelvoService";

/** Writes the argument of a call. */
void writeArgument(const Argument& argument, android::Parcel& request);

/**
 * The next value of a reply as JSON: the code of an exception header, an array for a vector, null
 * when the reply lacks the value.
 */
Json::Value readReplyValue(const android::Parcel& reply, ReplyType type);

}  // namespace client
