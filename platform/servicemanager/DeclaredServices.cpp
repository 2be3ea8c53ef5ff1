#include "DeclaredServices.h"

#include <stdlib.h>

#include <algorithm>
#include <fstream>

namespace servicemanager {

namespace {

constexpr char kFile[] = "/vendor/etc/vintf/declared";
constexpr char kBlanks[] = " \t\r";

std::string withoutCommentAndBlanks(const std::string& line) {
    const std::string text = line.substr(0, line.find('#'));
    const size_t begin = text.find_first_not_of(kBlanks);
    if (begin == std::string::npos) {
        return {};
    }
    return text.substr(begin, text.find_last_not_of(kBlanks) + 1 - begin);
}

std::vector<std::string> readDeclared() {
    const char* const root = getenv("KELVO_ROOT");
    std::ifstream file(std::string(root == nullptr ? "" : root) + kFile);
    std::vector<std::string> instances;
    for (std::string line; std::getline(file, line);) {
        if (std::string instance = withoutCommentAndBlanks(line); !instance.empty()) {
            instances.push_back(std::move(instance));
        }
    }
    return instances;
}

}  // namespace

bool isDeclared(const std::string& instance) {
    return std::ranges::count(readDeclared(), instance) > 0;
}

std::vector<std::string> declaredInstances(const std::string& interface) {
    const std::string prefix = interface + "/";
    std::vector<std::string> found;
    for (const std::string& instance : readDeclared()) {
        if (instance.starts_with(prefix)) {
            found.push_back(instance.substr(prefix.size()));
        }
    }
    return found;
}

}  // namespace servicemanager
