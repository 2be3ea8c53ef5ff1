#include "expectations/Junit.h"

#include <algorithm>
#include <ostream>

#include "common/Markup.h"

using common::escapedMarkup;

void writeJunit(std::ostream& out, const std::string& scenario,
                const std::vector<Verdict>& verdicts) {
    const std::string suite = escapedMarkup(scenario);
    const auto failures = std::ranges::count(verdicts, false, &Verdict::passed);
    out << "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<testsuites>\n<testsuite name=\"" << suite
        << "\" tests=\"" << verdicts.size() << "\" failures=\"" << failures
        << "\" errors=\"0\" skipped=\"0\">\n";
    for (const Verdict& verdict : verdicts) {
        const std::string& name = verdict.name.empty() ? verdict.expected : verdict.name;
        out << "<testcase classname=\"" << suite << "\" name=\""
            << escapedMarkup(verdict.place + ": " + name) << '"';
        if (verdict.passed) {
            out << "/>\n";
            continue;
        }
        out << "><failure message=\"" << escapedMarkup(verdict.happened) << "\">"
            << escapedMarkup("expected: " + verdict.expected) << '\n'
            << escapedMarkup("happened: " + verdict.happened) << '\n'
            << escapedMarkup("why: " + verdict.why) << "</failure></testcase>\n";
    }
    out << "</testsuite>\n</testsuites>\n";
}
