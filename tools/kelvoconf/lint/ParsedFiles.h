#pragma once

#include <optional>
#include <vector>

#include "kelvoconf/lint/FindingList.h"
#include "kelvoconf/lint/Lint.h"
#include "kelvoconf/lint/SourceFile.h"

namespace kelvo::lint {

/** The files of an input with what is wrong with them for any phone: read once for many phones. */
struct ParsedFiles {
    explicit ParsedFiles(const LintInput& input);

    SourceFile main;
    std::optional<SourceFile> sub;
    FindingList findings;
};

/** lintConfig() for files that are parsed; of the input their texts are not looked at. */
std::vector<Finding> lintParsed(const ParsedFiles& files, const LintInput& input);

}  // namespace kelvo::lint
