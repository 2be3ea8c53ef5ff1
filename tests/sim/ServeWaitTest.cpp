#include "sim/process/ServeWait.h"

#include <gmock/gmock.h>
#include <stdlib.h>

#include <stdexcept>

using sim::PhoneProcess;

namespace {

std::string refusalOf(const std::string& script) {
    const std::string root = getenv("KELVO_ROOT");
    const std::string log = root + "/log";
    const sim::ServeWait wait;
    const PhoneProcess process({"/bin/sh", "-c", script}, root, log);
    try {
        wait.refuse("the service x", process, log);
    } catch (const std::runtime_error& error) {
        std::string text = error.what();
        text.replace(text.find(root), root.size(), "ROOT");
        return text;
    }
}

}  // namespace

TEST(ServeWaitTest, saysHowTheProcessEndedAndWhatItsLogEndsWith) {
    EXPECT_THAT(refusalOf("echo 0; echo 1; echo; echo 2; echo 3; echo 4; echo 5; exit 3"),
                testing::MatchesRegex("the service x does not serve: it ended with status 3 after "
                                      "[0-9.]+ s; its log ROOT/log ends with:\n    1\n    2\n    "
                                      "3\n    4\n    5"));
}
