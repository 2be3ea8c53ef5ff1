#pragma once

#include <cstdint>
#include <utility>
#include <vector>

#include "shelltemp/FittingModel.h"
#include "shelltemp/PassRecord.h"

namespace kelvo {

/** What "/proc/shell-temp" was told last, by which it is told changes only. Fitting thread only. */
class WrittenTemps {
  public:
    /** Model indexes, ascending, with their temperatures (m°C). */
    using Changes = std::vector<std::pair<int32_t, int32_t>>;

    /** The values in another tenth of a degree than the last written, which is 0 at first. */
    Changes changed(const FittingTemps& temps) const;
    /**
     * Writes a line for each, up to the first that fails; a negative index is remembered but never
     * written. 0, or the failed write's result: the next cycle then finds the rest changed again.
     */
    int write(const Changes& changes, PassRecord& record);

  private:
    FittingTemps mTemps;
};

}  // namespace kelvo
