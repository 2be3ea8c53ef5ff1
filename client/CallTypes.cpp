#include "client/CallTypes.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace client {

std::optional<ReplyType> replyTypeNamed(std::string_view name) {
    using Named = std::pair<std::string_view, ReplyType>;
    static constexpr Named kTypes[] = {{"int32", ReplyType::Int32},
                                       {"float", ReplyType::Float},
                                       {"string", ReplyType::String},
                                       {"vector", ReplyType::Vector},
                                       {"exception", ReplyType::Exception}};
    const auto* const found = std::ranges::find(kTypes, name, &Named::first);
    return found != std::end(kTypes) ? std::optional(found->second) : std::nullopt;
}

}  // namespace client
