#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace client {

/** An argument of a call. */
using Argument = std::variant<int32_t, std::string, std::vector<int32_t>>;

/** What a reply holds next; Exception is the header before what a method returns. */
enum class ReplyType { Int32, Float, String, Vector, Exception };

/** The type with this name ("int32"); none for any other. */
std::optional<ReplyType> replyTypeNamed(std::string_view name);

}  // namespace client
