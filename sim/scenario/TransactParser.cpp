#include "sim/scenario/TransactParser.h"

#include <limits>

namespace sim {

namespace {

Argument parseArgument(const JsonPlace& place) {
    const auto members = place.members();
    if (members.size() == 1) {
        const auto& [kind, value] = members.front();
        if (kind == "int32") {
            return value.int32();
        }
        if (kind == "string") {
            return value.text();
        }
        if (kind == "listener") {
            return ListenerArgument{listenerId(value)};
        }
        if (kind == "vector") {
            std::vector<int32_t> numbers;
            for (const JsonPlace& element : value.elements()) {
                numbers.push_back(element.int32());
            }
            return numbers;
        }
    }
    place.fail(
            "expected one of {\"int32\": n}, {\"string\": s}, {\"vector\": […]}, "
            "{\"listener\": id}");
}

client::ReplyType parseReplyType(const JsonPlace& place) {
    const auto type = place.isString() ? client::replyTypeNamed(place.text()) : std::nullopt;
    if (!type) {
        place.fail("expected one of \"int32\", \"float\", \"string\", \"vector\", \"exception\"");
    }
    return *type;
}

}  // namespace

uint32_t unsigned31(const JsonPlace& place) {
    return static_cast<uint32_t>(place.whole(0, std::numeric_limits<int32_t>::max()));
}

uint32_t uidOr(const JsonPlace& action, uint32_t absent) {
    const auto uid = action.find("uid");
    return uid ? unsigned31(*uid) : absent;
}

std::string listenerId(const JsonPlace& place) {
    if (place.text().empty()) {
        place.fail("expected a text that is not empty");
    }
    return place.text();
}

Transact parseTransact(const JsonPlace& action) {
    action.onlyMembers({"t", "do", "code", "args", "reply", "uid"});
    Transact result;
    result.code = unsigned31(action.need("code"));
    result.uid = uidOr(action, result.uid);
    if (const auto args = action.find("args")) {
        for (const JsonPlace& element : args->elements()) {
            result.args.push_back(parseArgument(element));
        }
    }
    if (const auto reply = action.find("reply")) {
        result.reply.emplace();
        for (const JsonPlace& element : reply->elements()) {
            result.reply->push_back(parseReplyType(element));
        }
    }
    return result;
}

}  // namespace sim
