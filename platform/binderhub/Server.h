#pragma once

#include <string>

namespace binderhub {

/**
 * Listens at this path for every user and serves until SIGTERM or SIGINT, then removes the socket.
 * Returns what went wrong; empty when it ended as it should.
 */
std::string serve(const std::string& path);

}  // namespace binderhub
