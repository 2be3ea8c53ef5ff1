#include "shelltemp/WrittenTemps.h"

#include <gtest/gtest.h>
#include <stdlib.h>

#include "sim/tree/DeviceTree.h"
#include "sim/tree/ShellTempNode.h"
#include "support/LogCapture.h"

using kelvo::WrittenTemps;
using Lines = std::vector<std::string>;

namespace {

class WrittenTempsTest : public testing::Test {
  protected:
    WrittenTempsTest() { node.setPresent(true); }

    int write(const kelvo::FittingTemps& temps) {
        return written.write(written.changed(temps), record);
    }
    Lines takeLines() {
        Lines lines;
        node.takeLines([&](std::string_view line) { lines.emplace_back(line); });
        return lines;
    }

    LogCapture log;
    sim::DeviceTree tree{getenv("KELVO_ROOT")};
    sim::ShellTempNode node{tree};
    kelvo::PassRecord record;
    WrittenTemps written;
};

}  // namespace

TEST_F(WrittenTempsTest, writesAValueInAnotherTenthOfADegreeThanTheLastWritten) {
    const struct {
        int32_t temp;
        Lines lines;
    } cases[] = {
            {99, {}},  // 0 at first
            {-99, {}},
            {100, {"2 100"}},
            {38740, {"2 38740"}},
            {38799, {}},  // by steps that are too small each
            {38800, {"2 38800"}},
            {38799, {"2 38799"}},
            {-38799, {"2 -38799"}},
    };
    for (const auto& test : cases) {
        EXPECT_EQ(write({{2, test.temp}}), 0);
        EXPECT_EQ(takeLines(), test.lines) << test.temp;
    }
}
