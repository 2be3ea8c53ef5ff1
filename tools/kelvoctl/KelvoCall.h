#pragma once

#include <binder/Parcel.h>
#include <json/value.h>

#include <vector>

#include "client/CallTypes.h"
#include "service/ServiceCodes.h"

namespace kelvoctl {

/** The name under which clients know a transaction; its number when it has none. */
std::string callName(uint32_t code);

/** Calls the daemon. Throws Failure when it is absent or refuses. */
void callKelvo(uint32_t code, const std::vector<client::Argument>& arguments,
               android::Parcel* reply);
void callKelvo(uint32_t code, const std::vector<client::Argument>& arguments);

/** The next value of a reply; a float reads as the daemon has it: 38.6, not its nearest double. */
Json::Value readValue(const android::Parcel& reply, client::ReplyType type);

/** The same call, and the values of the reply; null for each that the reply lacks. */
std::vector<Json::Value> askKelvo(uint32_t code, const std::vector<client::ReplyType>& types,
                                  const std::vector<client::Argument>& arguments = {});

}  // namespace kelvoctl
