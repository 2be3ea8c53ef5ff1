// Starts the tests with a device root of their own and log level 2. Both are read while a program
// is loaded, so they are set before the program starts itself a second time.

#include <android/log.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <string_view>

#include "sim/process/RootedRun.h"

namespace {

bool listsTestsOnly(int argc, char** argv) {
    for (int i = 1; i < argc; ++i) {
        if (std::string_view(argv[i]) == "--gtest_list_tests") {
            return true;
        }
    }
    return false;
}

/** For the second start and the programs that the tests start. */
void setSanitizerOptions() {
    // Commands to the binder driver hold addresses at any place.
    setenv("LSAN_OPTIONS", "use_unaligned=1", 0);
    // Ends a process at once: the end below is not one that the sanitizer could make a failure.
    setenv("TSAN_OPTIONS", "halt_on_error=1:suppressions=" SUPPRESSIONS, 0);
}

}  // namespace

extern "C" {

void __lsan_do_leak_check() __attribute__((weak));
}

int main(int argc, char** argv) {
    if (!sim::runsBelowOwnRoot() && !listsTestsOnly(argc, argv)) {
        setSanitizerOptions();
        return sim::runBelowOwnRoot(argv, [](sim::DeviceTree& tree) {
            tree.setProperty("persist.sys.kelvo.loglevel", "2");
        });
    }
    __android_log_set_minimum_priority(ANDROID_LOG_VERBOSE);
    testing::InitGoogleTest(&argc, argv);
    const int result = RUN_ALL_TESTS();
    if (__lsan_do_leak_check != nullptr) {
        __lsan_do_leak_check();
    }
    // The daemon's threads never end: no static object may be destroyed under them.
    std::fflush(nullptr);
    _exit(result);
}
