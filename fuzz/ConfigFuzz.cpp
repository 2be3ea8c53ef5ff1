// Configuration files: bytes as the stored format, then as the text of a main and a sub-file.

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "Target.h"
#include "config/ConfigCipher.h"
#include "config/ConfigMerge.h"
#include "config/ConfigPath.h"
#include "config/ConfigText.h"

namespace {

void merge(const std::string& mainText, const std::string& subText) {
    Json::Value root;
    Json::Value subRoot;
    if (kelvo::parseConfigText(mainText, root) != 0) {
        return;
    }
    kelvo::parseConfigText(subText, subRoot);
    kelvo::mergeConfig(root, subRoot, "SM8450", "47213", nullptr);
    kelvo::lookUpConfig(root, {"shell_temp_fitting_model", "default", "temp_model"});
}

}  // namespace

void fuzzConfig(Bytes data) {
    const std::string bytes(textOf(data));
    std::string text;
    if (kelvo::decryptConfig(bytes, text) == 0 && (text.empty() || text.front() != '{')) {
        std::abort();  // what is accepted begins with a brace
    }
    const size_t half = bytes.find('\0');
    merge(bytes.substr(0, half), half == std::string::npos ? "" : bytes.substr(half + 1));
}
