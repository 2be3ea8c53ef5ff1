#include "config/CpuPowerTable.h"

#include <string>

namespace kelvo {

namespace {

constexpr int kHeadingLines = 2;
constexpr size_t kSeparatorSize = 2;  // ", "

bool parseEntry(const std::string& line, std::string* key, std::string* value) {
    const size_t open = line.find('(');
    const size_t comma = line.find(',');
    const size_t close = line.find(')');
    if (open == std::string::npos || comma == std::string::npos || close == std::string::npos) {
        return false;
    }
    // Marks in another order enclose no texts.
    if (open > comma || comma > close) {
        return false;
    }
    const size_t start = comma + kSeparatorSize;
    *key = line.substr(open + 1, comma - open - 1);
    *value = start < close ? line.substr(start, close - start) : std::string();
    return true;
}

}  // namespace

int parseCpuPowerTable(std::istream& in, Json::Value& out) {
    int result = -1;
    std::string line;
    std::string key;
    std::string value;
    for (int number = 0; std::getline(in, line); ++number) {
        if (number >= kHeadingLines && parseEntry(line, &key, &value)) {
            out[key] = value;
            result = 0;
        }
    }
    return result;
}

}  // namespace kelvo
