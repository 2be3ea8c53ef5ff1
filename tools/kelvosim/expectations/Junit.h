#pragma once

#include <iosfwd>
#include <string>
#include <vector>

#include "expectations/Verdict.h"

/**
 * Writes a test report as continuous integration reads it (JUnit XML): a suite named after the
 * scenario, a case for each verdict.
 */
void writeJunit(std::ostream& out, const std::string& scenario,
                const std::vector<Verdict>& verdicts);
