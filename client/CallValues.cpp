#include "client/CallValues.h"

#include <utils/String8.h>

#include "common/Overloaded.h"

namespace client {

namespace {

using android::OK;
using android::Parcel;
using android::String16;

Json::Value readVector(const Parcel& reply) {
    std::vector<int32_t> numbers;
    if (reply.readInt32Vector(&numbers) != OK) {
        return {};
    }
    Json::Value value(Json::arrayValue);
    for (const int32_t number : numbers) {
        value.append(number);
    }
    return value;
}

Json::Value readString(const Parcel& reply) {
    String16 text;
    return reply.readString16(&text) == OK ? Json::Value(android::String8(text).string())
                                           : Json::Value();
}

}  // namespace

void writeArgument(const Argument& argument, Parcel& request) {
    std::visit(common::Overloaded{
                       [&](int32_t value) { request.writeInt32(value); },
                       [&](const std::string& text) {
                           request.writeString16(String16(text.c_str(), text.size()));
                       },
                       [&](const std::vector<int32_t>& list) { request.writeInt32Vector(list); }},
               argument);
}

Json::Value readReplyValue(const Parcel& reply, ReplyType type) {
    int32_t whole = 0;
    float fraction = 0;
    switch (type) {
        case ReplyType::Int32:
            return reply.readInt32(&whole) == OK ? Json::Value(whole) : Json::Value();
        case ReplyType::Float:
            return reply.readFloat(&fraction) == OK ? Json::Value(fraction) : Json::Value();
        case ReplyType::String:
            return readString(reply);
        case ReplyType::Vector:
            return readVector(reply);
        case ReplyType::Exception:
            return reply.dataAvail() > 0 ? Json::Value(reply.readExceptionCode()) : Json::Value();
    }
    return {};
}

}  // namespace client
