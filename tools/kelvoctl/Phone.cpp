#include "Phone.h"

#include <filesystem>

#include "Output.h"

namespace kelvoctl {

namespace {

constexpr char kProperties[] = "/dev/properties";  // every phone has it

}  // namespace

std::string phoneRoot() {
    const char* const root = getenv("KELVO_ROOT");
    return root != nullptr ? root : "";
}

std::string kelvodLogPath() {
    return phoneRoot() + "/data/kelvod.log";
}

std::string noPhone(const std::string& why) {
    return why + "; \"kelvosim live SCENARIO\" starts a phone and prints its KELVO_ROOT";
}

void requirePhone() {
    const std::string folder = phoneRoot() + kProperties;
    std::error_code ignored;
    if (!std::filesystem::is_directory(folder, ignored)) {
        throw Failure("no phone to talk to", noPhone("no folder " + folder));
    }
}

}  // namespace kelvoctl
