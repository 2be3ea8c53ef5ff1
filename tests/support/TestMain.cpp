// Starts the tests with a device root of their own and log level 2. Both are read while a program
// is loaded, so they are set before the program starts itself a second time.

#include <android/log.h>
#include <gtest/gtest.h>

#include <string_view>

#include "sim/RootedRun.h"

namespace {

bool listsTestsOnly(int argc, char** argv) {
    for (int i = 1; i < argc; ++i) {
        if (std::string_view(argv[i]) == "--gtest_list_tests") {
            return true;
        }
    }
    return false;
}

}  // namespace

// The thread sanitizer does not see the fence between the last two decStrong() of libutils, which
// is not built with it, and takes the destructor that follows for a race.

extern "C" const char* __tsan_default_suppressions();

extern "C" const char* __tsan_default_suppressions() {
    return "race:android::RefBase::decStrong\n";
}

int main(int argc, char** argv) {
    if (!sim::runsBelowOwnRoot() && !listsTestsOnly(argc, argv)) {
        return sim::runBelowOwnRoot(argv, [](sim::DeviceTree& tree) {
            tree.setProperty("persist.sys.kelvo.loglevel", "2");
        });
    }
    __android_log_set_minimum_priority(ANDROID_LOG_VERBOSE);
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
