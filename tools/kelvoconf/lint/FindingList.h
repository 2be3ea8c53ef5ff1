#pragma once

#include <cstddef>
#include <cstdint>
#include <set>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "kelvoconf/lint/Finding.h"
#include "kelvoconf/lint/MergedConfig.h"

namespace kelvo::lint {

/** What findings are sorted by: the place of their file among `files`, then their line. */
std::pair<std::ptrdiff_t, int32_t> placeInOrder(const Finding& finding,
                                                const std::vector<std::string>& files);

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
