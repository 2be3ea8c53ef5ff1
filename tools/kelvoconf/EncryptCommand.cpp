#include <cstdint>
#include <limits>
#include <string>

#include "Commands.h"
#include "ConfigInput.h"
#include "Files.h"
#include "common/ConfigStore.h"

namespace kelvoconf {

namespace {

constexpr size_t kMaxText = std::numeric_limits<int32_t>::max() - 20;  // bytes

// The daemon may be given another text than it can parse, in a test of its failures for one.
void warnOfSyntax(const std::string& name, const std::string& text, size_t prefix) {
    Json::Value root;
    kelvo::ConfigTextError error;
    if (kelvo::parseConfigText(text.substr(prefix), root, &error) != 0) {
        error.offset += prefix;
        warn("the daemon will reject this text: " + error.what, placeOf(name, text, error.offset));
    }
}

}  // namespace

void encryptCommand(const std::string& in, const std::string& out) {
    const std::string text = readInput(in);
    const std::string name = in == "-" ? "standard input" : in;
    if (text.find('{') == std::string::npos) {
        throw Failure("no \"{\" in the text: " + name);
    }
    const size_t prefix = prefixSize(text);
    if (prefix == std::string::npos) {
        throw Failure("the text does not begin with an object: " + name);
    }
    if (text.size() - prefix > kMaxText) {
        throw Failure("the text is too long: " + name);
    }
    if (prefix > 0) {
        warn("dropped " + std::to_string(prefix) + " bytes before the first \"{\"", name);
    }
    warnOfSyntax(in, text, prefix);
    writeOutput(out, common::encryptConfig(std::string_view(text).substr(prefix)));
}

}  // namespace kelvoconf
