// Values of another type than their reader wants, in the document in force.

#include "kelvoconf/lint/KeyCatalogue.h"
#include "kelvoconf/lint/Readings.h"
#include "kelvoconf/lint/Rules.h"

namespace kelvo::lint {

namespace {

std::string listed(const std::vector<std::string>& names) {
    std::string text;
    for (const std::string& name : names) {
        text += (text.empty() ? "" : ", ") + quoted(name);
    }
    return text;
}

void notAnObject(const LintContext& context, const std::vector<std::string>& path,
                 const ConfigNode& node) {
    const std::string members = listed(namesBelow(path));
    context.error(
            "not-an-object", node,
            {"expected an object, found " + shown(node.value()),
             "takes as absent what it looks for below" + (members.empty() ? "" : ": " + members),
             "write an object with these members, or drop the key"});
}

/** By the key's reader where that can be asked, else by what the catalogue says of it. */
bool isRefused(const LintContext& context, const std::vector<std::string>& path,
               const ConfigNode& node, KeyType type) {
    return context.readings.refusesType(path).value_or(!hasType(node.value(), type));
}

void checkMember(const LintContext& context, const std::vector<std::string>& path,
                 const ConfigNode& node) {
    const KeyEntry* const key = findKey(path);
    if (key == nullptr || !node) {
        return;
    }
    if (key->type == KeyType::OBJECT && !node.value().isObject()) {
        notAnObject(context, path, node);
    } else if (isRefused(context, path, node, key->type) && !key->otherwise.empty()) {
        context.error(
                "wrong-type", node,
                {std::string("expected ") + typeText(key->type) + ", found " + shown(node.value()),
                 key->otherwise, std::string("write ") + typeText(key->type)});
    }
    for (const auto& [name, member] : node.members()) {
        std::vector<std::string> below = path;
        below.push_back(name);
        checkMember(context, below, member);
    }
}

}  // namespace

void checkTypes(const LintContext& context) {
    for (const auto& [name, node] : context.root().members()) {
        checkMember(context, {name}, node);
    }
}

}  // namespace kelvo::lint
