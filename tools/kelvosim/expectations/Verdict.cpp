#include "expectations/Verdict.h"

#include <algorithm>
#include <ostream>

#include "expectations/Judges.h"

std::vector<Verdict> judge(const std::vector<sim::Expectation>& expectations,
                           const Recording& recording) {
    std::vector<Verdict> verdicts;
    for (const sim::Expectation& expectation : expectations) {
        Verdict verdict = expectation.call ? judgeCall(expectation, recording)
                                           : judgeState(expectation, recording);
        verdict.place = expectation.place;
        verdict.name = expectation.name;
        verdict.expected = expectation.text;
        verdicts.push_back(std::move(verdict));
    }
    return verdicts;
}

bool allPassed(const std::vector<Verdict>& verdicts) {
    return std::ranges::all_of(verdicts, &Verdict::passed);
}

void writeVerdicts(std::ostream& out, const std::vector<Verdict>& verdicts) {
    for (const Verdict& verdict : verdicts) {
        out << (verdict.passed ? "passed: " : "FAILED: ") << verdict.place << ": "
            << (verdict.name.empty() ? "" : verdict.name + ": ") << verdict.expected << " ("
            << verdict.happened << ")\n";
        if (!verdict.why.empty()) {
            out << "    why: " << verdict.why << '\n';
        }
    }
    const auto failed = std::ranges::count(verdicts, false, &Verdict::passed);
    out << verdicts.size() - static_cast<size_t>(failed) << " of " << verdicts.size()
        << " expectations passed\n";
}
