#include "shelltemp/WrittenTemps.h"

#include <stdio.h>

#include "base/FileUtils.h"
#include "base/Log.h"

namespace kelvo {

namespace {

constexpr char kShellTempNode[] = "/proc/shell-temp";
constexpr int32_t kWriteStep = 100;  // m°C; a smaller change is not written

}  // namespace

WrittenTemps::Changes WrittenTemps::changed(const FittingTemps& temps) const {
    Changes changes;  // mostly empty: a shell changes slowly
    for (const auto& [index, temp] : temps) {
        const auto last = mTemps.find(index);
        const int32_t written = last == mTemps.end() ? 0 : last->second;
        if (temp / kWriteStep != written / kWriteStep) {
            changes.emplace_back(index, temp);
        }
    }
    return changes;
}

int WrittenTemps::write(const Changes& changes, PassRecord& record) {
    for (const auto& [index, temp] : changes) {
        if (index >= 0) {
            char line[32];
            snprintf(line, sizeof(line), "%d %d\n", index, temp);
            const int result = writeFile(kShellTempNode, line);
            if (result < 0) {
                return result;
            }
        }
        mTemps[index] = temp;
        record.change(index, index >= 0);
        KLOGD("update shell temp %d:%d", index, temp);
    }
    return 0;
}

}  // namespace kelvo
