#include "expectations/Junit.h"

#include <algorithm>
#include <ostream>

namespace {

/** As text or as an attribute between double quotes; what XML cannot hold becomes "?". */
std::string inXml(const std::string& text) {
    constexpr unsigned char kFirstPrintable = 0x20;
    std::string result;
    for (const char byte : text) {
        switch (byte) {
            case '<':
                result += "&lt;";
                break;
            case '>':
                result += "&gt;";
                break;
            case '&':
                result += "&amp;";
                break;
            case '"':
                result += "&quot;";
                break;
            default:
                result += static_cast<unsigned char>(byte) < kFirstPrintable ? '?' : byte;
        }
    }
    return result;
}

}  // namespace

void writeJunit(std::ostream& out, const std::string& scenario,
                const std::vector<Verdict>& verdicts) {
    const std::string suite = inXml(scenario);
    const auto failures = std::ranges::count(verdicts, false, &Verdict::passed);
    out << "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<testsuites>\n<testsuite name=\"" << suite
        << "\" tests=\"" << verdicts.size() << "\" failures=\"" << failures
        << "\" errors=\"0\" skipped=\"0\">\n";
    for (const Verdict& verdict : verdicts) {
        const std::string& name = verdict.name.empty() ? verdict.expected : verdict.name;
        out << "<testcase classname=\"" << suite << "\" name=\""
            << inXml(verdict.place + ": " + name) << '"';
        if (verdict.passed) {
            out << "/>\n";
            continue;
        }
        out << "><failure message=\"" << inXml(verdict.happened) << "\">"
            << inXml("expected: " + verdict.expected) << '\n'
            << inXml("happened: " + verdict.happened) << '\n'
            << inXml("why: " + verdict.why) << "</failure></testcase>\n";
    }
    out << "</testsuite>\n</testsuites>\n";
}
