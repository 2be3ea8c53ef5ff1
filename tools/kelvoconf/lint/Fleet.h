#pragma once

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "kelvoconf/lint/Finding.h"
#include "kelvoconf/lint/Lint.h"

namespace kelvo::lint {

/** A platform or project; none: any that the document does not name. */
using PhoneName = std::optional<std::string>;

/** The phones that a configuration is judged for: each platform with each project. */
struct Fleet {
    std::vector<PhoneName> platforms;
    std::vector<PhoneName> projects;
};

/** A finding with the phones that it hits, by platform: a platform's projects. */
struct FleetFinding {
    using Hits = std::vector<std::pair<PhoneName, std::vector<PhoneName>>>;

    Finding finding;
    Hits hits;  // in the fleet's order
};

/**
 * All platforms and projects that the files' sections are for, then any other. The input's platform
 * stands alone with `onlyPlatform`, its project with `onlyProject`; so does the platform that the
 * sub-file's name tells, as "kelvo_SM8450.conf" does.
 */
Fleet fleetOf(const LintInput& input, bool onlyPlatform, bool onlyProject);

/** The findings of all phones of the fleet, each once, in the order of lintConfig(). */
std::vector<FleetFinding> lintFleet(LintInput input, const Fleet& fleet);

}  // namespace kelvo::lint
