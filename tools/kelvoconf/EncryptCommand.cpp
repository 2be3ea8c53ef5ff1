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

// With `force` the daemon is given what it cannot parse, in a test of its failures for one.
void checkSyntax(const std::string& name, const std::string& text, size_t prefix, bool force) {
    Json::Value root;
    kelvo::ConfigTextError error;
    if (kelvo::parseConfigText(text.substr(prefix), root, &error) == 0) {
        return;
    }
    const std::string problem = "the daemon will reject this text: " + error.what;
    const std::string place = placeOf(name, text, error.offset + prefix);
    if (!force) {
        throw Failure(problem + "; --force stores it: " + place);
    }
    warn(problem, place);
}

}  // namespace

void encryptCommand(const std::string& in, const std::string& out, bool force) {
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
    checkSyntax(in, text, prefix, force);
    writeOutput(out, common::encryptConfig(std::string_view(text).substr(prefix)));
}

}  // namespace kelvoconf
