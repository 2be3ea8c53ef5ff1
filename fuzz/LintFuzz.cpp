// Documents that kelvoconf judges: main file, zero byte, sub-file. Every finding can be shown.

#include <string>

#include "Input.h"
#include "kelvoconf/lint/FindingText.h"
#include "kelvoconf/lint/Lint.h"

void fuzzLint(Bytes data) {
    Input parts(data);
    kelvo::lint::LintInput input;
    input.platform = "SM8450";
    input.project = "30117";
    input.main = {"main.json", std::string(textOf(parts.upToZero())), 1};
    if (!parts.empty()) {
        input.sub = {"sub.json", std::string(textOf(parts.upToZero())), 1};
    }
    if (data.size() % 2 == 0) {
        input.zones = {"cpu-1-3", "board-therm", "skin", "battery", "skin"};
    }
    for (const auto& finding : kelvo::lint::lintConfig(input)) {
        require(finding.line >= 1, "a finding names a line");
        require(!toText(finding).empty() && toJsonLine(finding).back() == '\n', "it can be shown");
    }
}
