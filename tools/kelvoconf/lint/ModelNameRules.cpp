// Models whose names nearly mean something.

#include <algorithm>
#include <cctype>
#include <optional>
#include <string>
#include <vector>

#include "common/NearestName.h"
#include "config/ConfigNames.h"
#include "kelvoconf/lint/KeyCatalogue.h"
#include "kelvoconf/lint/SceneSet.h"

namespace kelvo::lint {

namespace {

using Names = std::vector<std::string>;

constexpr char kReferenceName[] = "refer";
constexpr size_t kSlip = 1;  // letters that may differ: the names are short, and so are others

const Names& namesKnownIn(const ParsedScene& scene) {
    static const Names shell = {model::kBoard, model::kFront, model::kFrame, model::kBack,
                                model::kInner};
    static const Names ambient = {model::kPower, model::kFront, model::kFrame, model::kBack};
    return isAmbientScene(scene.set.scene) ? ambient : shell;
}

/** What people read: small letters and digits only. */
std::string plain(const std::string& name) {
    std::string text;
    for (const char letter : name) {
        const auto c = static_cast<unsigned char>(letter);
        if (std::isalnum(c) != 0) {
            text.push_back(static_cast<char>(std::tolower(c)));
        }
    }
    return text;
}

/** A name with a number is one on purpose: "front2" stands beside "front". */
bool endsInNumber(const std::string& name) {
    return !name.empty() && std::isdigit(static_cast<unsigned char>(name.back())) != 0;
}

std::optional<std::string> meant(const std::string& name, const Names& known) {
    const std::string text = plain(name);
    const auto turned = std::ranges::find_if(
            known, [&text](const std::string& k) { return std::ranges::is_permutation(k, text); });
    if (turned != known.end()) {
        return *turned;
    }
    return endsInNumber(text) ? std::nullopt : common::nearestName(text, known, kSlip);
}

std::string effectOf(const std::string& meant, const std::string& scene) {
    const std::string knows = "knows " + quoted(meant) + " only, spelled so: ";
    if (meant == model::kBoard) {
        return knows +
               "takes this model for a part of the shell, so that the board's temperature "
               "can become the shell temperature, and caps nothing by it";
    }
    if (meant == model::kPower) {
        return knows + "takes this model for a temperature, and has no power to estimate with";
    }
    if (meant == model::kInner) {
        return knows + "does not correct this model on the project that needs it";
    }
    return knows + (isAmbientScene(scene) ? "prefers any model of that name to this one"
                                          : "an ambient scene does not find this temperature");
}

void checkName(const LintContext& context, const ParsedScene& scene, const std::string& name) {
    const Names& known = namesKnownIn(scene);
    if (std::ranges::find(known, name) != known.end()) {
        return;
    }
    const std::optional<std::string> right = meant(name, known);
    const bool isThere = right && std::ranges::count(scene.set.models, *right, &FittingModel::name);
    if (right && !isThere) {
        context.warning("model-name", scene.model(name),
                        {"the name " + quoted(name) + " of a model means nothing",
                         effectOf(*right, scene.set.scene), "write " + quoted(*right)});
    }
}

/** It is the index that makes a reference, whatever the model is called. */
void checkReference(const LintContext& context, const ParsedScene& scene) {
    for (const FittingModel& model : scene.set.models) {
        if (plain(model.name) == kReferenceName && model.index != kReferenceIndex) {
            context.warning("model-name", scene.model(model.name),
                            {"the name " + quoted(model.name) + " makes no reference",
                             "takes it for a part of the shell like any other, and caps nothing",
                             "give it index " + std::to_string(kReferenceIndex)});
        }
    }
}

}  // namespace

void checkModelNames(const LintContext& context) {
    for (const ParsedScene& scene : context.scenes.scenes) {
        const bool isShell = isShellScene(scene.set.scene);
        if (!isShell && !isAmbientScene(scene.set.scene)) {
            continue;
        }
        for (const FittingModel& model : scene.set.models) {
            checkName(context, scene, model.name);
        }
        if (isShell) {
            checkReference(context, scene);
        }
    }
}

}  // namespace kelvo::lint
