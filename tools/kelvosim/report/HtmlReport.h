#pragma once

#include <ostream>
#include <string>
#include <vector>

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
 * installed as the package libjs-dygraphs, is put into it. Throws std::runtime_error without it.
 */
void writeHtmlReport(std::ostream& stream, const Recording& recording,
                     const std::vector<ReportWarning>& warnings);
