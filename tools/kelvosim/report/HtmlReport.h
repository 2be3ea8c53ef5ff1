#pragma once

#include <ostream>
#include <string>
#include <vector>

#include "comparison/Comparison.h"
#include "expectations/Verdict.h"
#include "recording/Recording.h"

/** A mistake or trap of the configuration, for the page's table. */
struct ReportWarning {
    bool isError = false;
    bool isRejected = false;  // the daemon does not take the file
    std::string place;        // file and key path
    std::string what;
    std::string effect;
    std::string mend;
};

/** What a page shows besides the recording. */
struct ReportAdditions {
    std::string problem;  // what keeps the daemon from its configuration; empty when nothing
    std::vector<ReportWarning> warnings;
    std::vector<Verdict> verdicts;    // of the scenario's expectations
    std::vector<ComparedRun> others;  // shown beside the recording
};

/**
 * Writes a recording as one page that needs nothing else, no network either: the plotting library,
 * installed as the package libjs-dygraphs, is put into it. Throws std::runtime_error without the
 * library.
 */
void writeHtmlReport(std::ostream& stream, const Recording& recording,
                     const ReportAdditions& additions);
