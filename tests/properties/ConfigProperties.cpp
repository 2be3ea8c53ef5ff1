#include <json/value.h>

#include "Property.h"
#include "common/ConfigStore.h"
#include "config/ConfigCipher.h"
#include "config/ConfigMerge.h"

namespace {

constexpr char kPlatform[] = "SM8450";
constexpr char kProject[] = "30117";

Json::Value anyObject(Draws& draws, int depth = 4) {
    Json::Value object(Json::objectValue);
    for (int32_t i = draws.in(0, 5); i > 0; --i) {
        Json::Value& member = object["k" + std::to_string(draws.in(0, 5))];
        const Json::Value leaves[] = {draws.in(-9, 9), "text", Json::Value(), draws.real(-9, 9)};
        if (const int32_t kind = draws.in(0, depth > 0 ? 6 : 3); kind < 4) {
            member = leaves[kind];
        } else {
            Json::Value inner = anyObject(draws, depth - 1);
            kind < 6 ? member = inner : (member = Json::arrayValue).append(inner);
        }
    }
    return object;
}

/** The objects of a document with nothing said in them; some are left out. */
Json::Value emptyOverride(const Json::Value& document, Draws& draws) {
    Json::Value result(Json::objectValue);
    for (const std::string& name : document.getMemberNames()) {
        if (document[name].isObject() && !draws.oneIn(4)) {
            result[name] = emptyOverride(document[name], draws);
        } else if (draws.oneIn(3)) {
            result[name] = Json::Value();
        }
    }
    return result;
}

PROPERTY(ConfigProperties, emptyOverridesChangeNothing, 500) {
    const Json::Value plain = anyObject(draws);
    Json::Value root = plain;
    Json::Value sub = emptyOverride(plain, draws);
    for (const char* section : {kPlatform, kProject, "4,30117", "30117,"}) {
        root[section] = sub[section] = emptyOverride(plain, draws);
    }
    kelvo::mergeConfig(root, draws.oneIn(2) ? sub : Json::Value(), kPlatform, kProject, nullptr);
    draws.note(plain.toStyledString() + "became" + root.toStyledString());
    return std::ranges::all_of(plain.getMemberNames(),
                               [&](const std::string& name) { return root[name] == plain[name]; });
}

PROPERTY(ConfigProperties, decryptingGivesWhatWasEncrypted, 500) {
    std::string text = "{";
    text.resize(static_cast<size_t>(draws.in(1, 150)));
    std::generate(text.begin() + 1, text.end(),
                  [&] { return static_cast<char>(draws.in(0, 255)); });
    std::string back;
    return kelvo::decryptConfig(common::encryptConfig(text), back) == 0 && back == text;
}

}  // namespace
