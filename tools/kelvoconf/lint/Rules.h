#pragma once

#include <cstdint>
#include <string>

#include "kelvoconf/lint/FindingList.h"
#include "kelvoconf/lint/Lint.h"
#include "kelvoconf/lint/MergedConfig.h"
#include "kelvoconf/lint/SourceFile.h"
#include "shelltemp/ZoneTable.h"

namespace kelvo::lint {

struct Readings;
struct SceneSet;

/** What the rules judge. One thread. */
struct LintContext {
    const SceneSet& scenes;
    const Readings& readings;
    const LintInput& input;
    const SourceFile& main;
    const SourceFile* sub;  // null: there is none, or none that the daemon would read
    const MergedConfig& config;
    /** The phone's zones; when they are unknown, every type that the document names. */
    const ZoneTable& zones;
    int32_t zoneCount;
    FindingList& findings;

    bool knowsZones() const { return input.zones.has_value(); }
    ConfigNode root() const { return config.root(); }
    void error(const std::string& rule, const ConfigNode& node, Advice advice) const {
        findings.error(rule, config.placeOf(node.path()), std::move(advice));
    }
    void warning(const std::string& rule, const ConfigNode& node, Advice advice) const {
        findings.warning(rule, config.placeOf(node.path()), std::move(advice));
    }
};

// The families of rules, a file each.

/** Texts that do not parse, or that the daemon takes for another file. */
void checkSource(const SourceFile& file, bool isMain, FindingList& findings);
/** Override sections that do not apply. */
void checkSections(const LintContext& context);
/** Keys that nobody reads, and nulls that override nothing. */
void checkKeys(const LintContext& context);
/** Values of another type than their reader wants. */
void checkTypes(const LintContext& context);
/** Scenes and models that are dropped, and what their numbers do. */
void checkScenes(const LintContext& context);
/** Backup scenes that do not back up. */
void checkBackups(const LintContext& context);
/** Lists of zones outside of models. */
void checkZoneLists(const LintContext& context);
/** The ambient estimator's models and coefficients. */
void checkAmbient(const LintContext& context);
/** Levels and their thresholds. */
void checkStatus(const LintContext& context);
/** Broadcasts and big data. */
void checkSettings(const LintContext& context);
/** Coefficients and tables of the heat components. */
void checkHeat(const LintContext& context);
/** Models whose names nearly mean something. */
void checkModelNames(const LintContext& context);
/** Numbers that are possible but absurd. */
void checkCounts(const LintContext& context);
/** Values of the models at the phone's temperatures, where those are known. */
void checkPlausibility(const LintContext& context);

/** A type or other name for messages: in double quotes. */
std::string quoted(const std::string& name);

}  // namespace kelvo::lint
