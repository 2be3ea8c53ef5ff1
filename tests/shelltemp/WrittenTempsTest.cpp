#include "shelltemp/WrittenTemps.h"

#include <gtest/gtest.h>

#include "sim/tree/ShellTempNode.h"
#include "support/LogCapture.h"
#include "support/Phone.h"

using kelvo::WrittenTemps;
using Lines = std::vector<std::string>;

namespace {

struct WrittenTempsTest : testing::Test {
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
    sim::DeviceTree tree = phone();
    sim::ShellTempNode node{tree};
    kelvo::PassRecord record;
    WrittenTemps written;
};

}  // namespace

TEST_F(WrittenTempsTest, writesAValueInAnotherTenthOfADegreeThanTheLastWritten) {
    const std::pair<int32_t, Lines> cases[] = {
            {99, {}},  // 0 at first
            {-99, {}},
            {100, {"2 100"}},
            {38740, {"2 38740"}},
            {38799, {}},  // by steps that are too small each
            {38800, {"2 38800"}},
            {38799, {"2 38799"}},
            {-38799, {"2 -38799"}},
    };
    for (const auto& [temp, lines] : cases) {
        EXPECT_EQ(write({{2, temp}}), 0);
        EXPECT_EQ(takeLines(), lines) << temp;
    }
}
