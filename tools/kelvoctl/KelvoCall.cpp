#include "KelvoCall.h"

#include <map>

#include "Services.h"
#include "client/CallValues.h"
#include "common/JsonText.h"

namespace kelvoctl {

std::string callName(uint32_t code) {
    using namespace kelvo;
    static const std::map<uint32_t, const char*> kNames = {
            {REGISTER_CLIENT, "REGISTER_CLIENT"},
            {UNREGISTER_CLIENT, "UNREGISTER_CLIENT"},
            {GET_THERMAL_STATUS, "GET_THERMAL_STATUS"},
            {GET_THERMAL_CONFIG, "GET_THERMAL_CONFIG"},
            {SET_DYNAMIC_CONFIG, "SET_DYNAMIC_CONFIG"},
            {GET_VERSION, "GET_VERSION"},
            {GET_BIG_DATA, "GET_BIG_DATA"},
            {RELOAD_CONFIG, "RELOAD_CONFIG"},
            {SET_SCREEN_STATUS, "SET_SCREEN_STATUS"},
            {NOTIFY_THERMAL_STATUS, "NOTIFY_THERMAL_STATUS"},
            {PEEK_BIG_DATA, "PEEK_BIG_DATA"},
            {GET_CURRENT_TEMP, "GET_CURRENT_TEMP"},
            {SET_CURRENT_PACKAGE, "SET_CURRENT_PACKAGE"},
            {SET_LIGHT_LAMP_STATUS, "SET_LIGHT_LAMP_STATUS"},
            {GET_SPECIFIED_ZONE_TEMPS, "GET_SPECIFIED_ZONE_TEMPS"},
            {GET_ALL_SHELL_TEMPS, "GET_ALL_SHELL_TEMPS"},
            {SHELL_TEMP_AND_TYPE, "SHELL_TEMP_AND_TYPE"},
            {IS_NEW_SAFETY_TYPE, "IS_NEW_SAFETY_TYPE"},
            {SET_SCREEN_FOLD_STATUS, "SET_SCREEN_FOLD_STATUS"},
            {GET_AMBIENT_TEMP, "GET_AMBIENT_TEMP"},
            {CPU_LIMIT_PROCEESES, "CPU_LIMIT_PROCEESES"},
            {COMPONENT_HEAT_TEST, "COMPONENT_HEAT_TEST"},
            {SET_WIFI_INFO, "SET_WIFI_INFO"},
            {SET_NETWORK_INFO, "SET_NETWORK_INFO"},
            {SET_NETWORK_SPEED_INFO, "SET_NETWORK_SPEED_INFO"},
            {GET_COMPONENTS_HEAT_DETAIL, "GET_COMPONENTS_HEAT_DETAIL"},
    };
    const auto found = kNames.find(code);
    return found != kNames.end() ? found->second : std::to_string(code);
}

void callKelvo(uint32_t code, const std::vector<client::Argument>& arguments,
               android::Parcel* reply) {
    android::Parcel request;
    request.writeInterfaceToken(toString16(client::kServiceDescriptor));
    for (const client::Argument& argument : arguments) {
        client::writeArgument(argument, request);
    }
    checkStatus(findService(kKelvo)->transact(code, request, reply), callName(code));
}

void callKelvo(uint32_t code, const std::vector<client::Argument>& arguments) {
    android::Parcel reply;
    callKelvo(code, arguments, &reply);
}

Json::Value readValue(const android::Parcel& reply, client::ReplyType type) {
    const Json::Value value = client::readReplyValue(reply, type);
    return type == client::ReplyType::Float && value.isDouble()
                   ? Json::Value(common::asWritten(value.asFloat()))
                   : value;
}

std::vector<Json::Value> askKelvo(uint32_t code, const std::vector<client::ReplyType>& types,
                                  const std::vector<client::Argument>& arguments) {
    android::Parcel reply;
    callKelvo(code, arguments, &reply);
    std::vector<Json::Value> values;
    values.reserve(types.size());
    for (const client::ReplyType type : types) {
        values.push_back(readValue(reply, type));
    }
    return values;
}

}  // namespace kelvoctl
