// kelvofuzz TARGET [LIBFUZZER OPTIONS] [FOLDERS]: feeds a target with what libFuzzer makes up.

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>

#include "Target.h"

namespace {

// libFuzzer starts the program again with the arguments that it has seen, without the target's.
constexpr char kTargetVariable[] = "KELVO_FUZZ_TARGET";

const Target* sTarget = nullptr;

[[noreturn]] void refuse() {
    std::fputs("usage: kelvofuzz TARGET [LIBFUZZER OPTIONS] [FOLDERS]; targets:", stderr);
    for (const Target& target : allTargets()) {
        std::fprintf(stderr, " %s", target.name.data());
    }
    std::fputc('\n', stderr);
    std::exit(2);
}

/** Takes the target's name off the arguments. */
void chooseTarget(int* argc, char** argv) {
    const Target* const named = *argc > 1 ? findTarget(argv[1]) : nullptr;
    if (named != nullptr) {
        setenv(kTargetVariable, argv[1], 1);
        for (int i = 1; i < *argc; ++i) {
            argv[i] = argv[i + 1];
        }
        --*argc;
    }
    const char* const inherited = getenv(kTargetVariable);
    sTarget = inherited == nullptr ? nullptr : findTarget(inherited);
    if (sTarget == nullptr) {
        refuse();
    }
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int* argc, char*** argv);
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size);

int LLVMFuzzerInitialize(int* argc, char*** argv) {
    moveBelowOwnRoot(*argv);
    chooseTarget(argc, *argv);
    return 0;
}

int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    sTarget->run({data, size});
    return 0;
}
