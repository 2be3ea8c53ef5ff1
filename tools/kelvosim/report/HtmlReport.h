#pragma once

#include <ostream>
#include <string>
#include <vector>

#include "comparison/Comparison.h"
#include "recording/Recording.h"

/** A mistake or trap of the configuration, for the page's table. */
struct ReportWarning {
    bool isError = false;
    std::string place;  // file and key path
    std::string what;
    std::string effect;
    std::string mend;
};

/**
 * Writes a recording as one page that needs nothing else, no network either: the plotting library,
 * installed as the package libjs-dygraphs, is put into it. `other` is shown beside the recording
 * when it is not null. Throws std::runtime_error without the library.
 */
void writeHtmlReport(std::ostream& stream, const Recording& recording,
                     const std::vector<ReportWarning>& warnings,
                     const ComparedRun* other = nullptr);
