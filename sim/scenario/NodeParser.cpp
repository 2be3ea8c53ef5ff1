#include "sim/scenario/NodeParser.h"

#include "common/NearestName.h"

namespace sim {

namespace {

constexpr size_t kLongestPath = 1024;
constexpr size_t kLongestPropertyValue = 91;  // what the property service takes

std::optional<std::string> parseNodeText(const JsonPlace& text) {
    if (text.isNull()) {
        return std::nullopt;
    }
    if (text.isString()) {
        return text.text();
    }
    if (!text.isObject()) {
        text.fail("expected a text, {\"hex\": …} or null");
    }
    text.onlyMembers({"hex"});
    return text.need("hex").hexBytes();
}

bool isPropertyName(std::string_view name) {
    constexpr std::string_view kAllowed =
            "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789._-@:";
    return !name.empty() && name.front() != '.' &&
           name.find_first_not_of(kAllowed) == std::string_view::npos;
}

}  // namespace

bool isNodePath(std::string_view path) {
    if (path.empty() || path.front() != '/' || path.size() > kLongestPath ||
        path.find('\0') != std::string_view::npos) {
        return false;
    }
    for (size_t start = 0; start != std::string_view::npos; start = path.find('/', start)) {
        const size_t end = path.find('/', ++start);
        const std::string_view part = path.substr(start, end - start);
        if (part.empty() || part == "." || part == "..") {
            return false;
        }
    }
    return true;
}

std::vector<NodeChange> parseNodes(const JsonPlace& nodes) {
    std::vector<NodeChange> result;
    for (const auto& [path, text] : nodes.members()) {
        if (!isNodePath(path)) {
            text.fail("expected an absolute path without \"..\"");
        }
        result.push_back({path, parseNodeText(text)});
    }
    return result;
}

std::vector<std::pair<std::string, std::string>> parseProperties(const JsonPlace& properties) {
    std::vector<std::pair<std::string, std::string>> result;
    for (const auto& [name, value] : properties.members()) {
        if (!isPropertyName(name)) {
            value.fail("this is no name of a property");
        }
        if (value.text().size() > kLongestPropertyValue) {
            value.fail("expected a text of at most 91 bytes");
        }
        result.emplace_back(name, value.text());
    }
    return result;
}

std::optional<int32_t> parseZoneTemp(const JsonPlace& temp) {
    if (temp.isNull()) {
        return std::nullopt;
    }
    return temp.int32("expected a whole number of m°C or null");
}

std::string parseServiceName(const JsonPlace& name) {
    std::string text = name.text();
    if (!allServices().contains(text)) {
        const std::vector<std::string> known(allServices().begin(), allServices().end());
        name.fail("no service \"" + text + "\"" + common::suggestion(text, known));
    }
    return text;
}

}  // namespace sim
