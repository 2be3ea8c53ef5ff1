#include <string>

#include "Commands.h"
#include "Files.h"
#include "config/ConfigCipher.h"

namespace kelvoconf {

void decryptCommand(const std::string& in, const std::string& out) {
    std::string text;
    if (kelvo::decryptConfig(readInput(in), text) != 0) {
        throw Failure("not an encrypted configuration: " + (in == "-" ? "standard input" : in));
    }
    writeOutput(out, text);
}

}  // namespace kelvoconf
