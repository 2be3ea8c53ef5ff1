#pragma once

#include <string>

namespace kelvoctl {

/** The phone's device root as KELVO_ROOT names it; empty for the machine's own "/". */
std::string phoneRoot();

/** Where a phone that `kelvosim live` runs has the daemon's log. */
std::string kelvodLogPath();

/** What a message about an absent phone says beside the reason `why`. */
std::string noPhone(const std::string& why);

/** Throws Failure when the device root is none of a phone; otherwise its files could be used. */
void requirePhone();

}  // namespace kelvoctl
