#include "kelvoconf/lint/FindingText.h"

#include "kelvoconf/lint/Rules.h"

namespace kelvo::lint {

const char* severityName(Severity severity) {
    return severity == Severity::ERROR ? "error" : "warning";
}

std::string toText(const Finding& finding) {
    const std::string line = finding.line > 0 ? ":" + std::to_string(finding.line) : "";
    const std::string path = finding.path.empty() ? "" : finding.path + ": ";
    return finding.file + line + ": " + severityName(finding.severity) + ": " + path +
           finding.what + " [" + finding.rule + "]\n    effect: " + finding.effect +
           "\n    mend:   " + finding.mend + "\n";
}

// The library would sort the keys; readers rely on this order.
std::string toJsonLine(const Finding& finding) {
    const std::string line = finding.line > 0 ? std::to_string(finding.line) : "null";
    return R"({"severity":)" + quoted(severityName(finding.severity)) + R"(,"rule":)" +
           quoted(finding.rule) + R"(,"file":)" + quoted(finding.file) + R"(,"path":)" +
           quoted(finding.path) + R"(,"line":)" + line + R"(,"what":)" + quoted(finding.what) +
           R"(,"effect":)" + quoted(finding.effect) + R"(,"mend":)" + quoted(finding.mend) + "}\n";
}

}  // namespace kelvo::lint
