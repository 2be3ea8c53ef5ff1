#include "kelvoconf/lint/SectionNames.h"

#include <algorithm>
#include <cctype>
#include <string_view>

#include "base/SplitText.h"
#include "config/PlatformTable.h"
#include "kelvoconf/lint/KeyCatalogue.h"

namespace kelvo::lint {

bool isGroupName(const std::string& name) {
    return name.find(',') != std::string::npos;
}

std::vector<std::string> projectsOf(const std::string& groupName) {
    const auto pieces = splitText(groupName, ',');
    return {pieces.begin(), pieces.end()};
}

bool isListWithoutCommas(const std::string& name) {
    return !isGroupName(name) && name.find_first_of(";|/ \t") != std::string::npos;
}

bool isPlatformLike(const std::string& name) {
    std::string upper = name;
    std::ranges::transform(upper, upper.begin(), [](unsigned char c) { return std::toupper(c); });
    for (const std::string_view family : {"MSM", "SDM", "SM", "MT"}) {
        if (upper.size() > family.size() && upper.starts_with(family) &&
            std::isdigit(static_cast<unsigned char>(upper[family.size()])) != 0) {
            return true;
        }
    }
    return false;
}

bool isSectionOfProject(const std::string& name, const ConfigNode& node) {
    return findKey({name}) == nullptr &&
           std::ranges::any_of(node.members(), [](const auto& member) {
               return findKey({member.first}) != nullptr;
           });
}

std::vector<std::string> detectablePlatforms() {
    std::vector<std::string> names;
    for (int32_t i = 0; *platformNameAt(i) != '\0'; ++i) {
        if (isDetectablePlatform(platformNameAt(i))) {
            names.emplace_back(platformNameAt(i));
        }
    }
    return names;
}

}  // namespace kelvo::lint
