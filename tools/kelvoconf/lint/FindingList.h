#pragma once

#include <set>
#include <string>
#include <tuple>
#include <vector>

#include "kelvoconf/lint/Finding.h"
#include "kelvoconf/lint/MergedConfig.h"

namespace kelvo::lint {

/** The words of a finding. */
struct Advice {
    std::string what;
    std::string effect;
    std::string mend;
};

/** Collects findings; of two about the same rule and place the first is kept. */
class FindingList {
  public:
    void error(const std::string& rule, Place place, Advice advice);
    void warning(const std::string& rule, Place place, Advice advice);

    /** In the order of the files given, then of lines. */
    std::vector<Finding> take(const std::vector<std::string>& files);

  private:
    void add(Severity severity, const std::string& rule, Place place, Advice advice);

    std::vector<Finding> mFindings;
    std::set<std::tuple<std::string, std::string, std::string>> mSeen;  // rule, file, path
};

}  // namespace kelvo::lint
