// fuzzreplay TARGET PATH…: feeds a target once with every file of these folders, each in a process
// of its own, so that none depends on what the ones before it have left.

#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "Target.h"

namespace {

constexpr unsigned kLimit = 30;  // s for one input, also on a slow machine with sanitizers

std::vector<std::string> filesOf(const std::string& path) {
    if (!std::filesystem::is_directory(path)) {
        return {path};
    }
    std::vector<std::string> files;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(path)) {
        if (entry.is_regular_file()) {
            files.push_back(entry.path());
        }
    }
    std::ranges::sort(files);
    return files;
}

[[noreturn]] void feed(const Target& target, const std::string& file) {
    alarm(kLimit);
    std::ifstream stream(file, std::ios::binary);
    if (!stream) {
        std::perror(file.c_str());
        _exit(1);
    }
    const std::string bytes{std::istreambuf_iterator<char>(stream), {}};
    target.run({reinterpret_cast<const uint8_t*>(bytes.data()), bytes.size()});
    _exit(0);
}

bool passes(const Target& target, const std::string& file) {
    const pid_t child = fork();
    if (child == 0) {
        feed(target, file);
    }
    int status = -1;
    if (child < 0 || waitpid(child, &status, 0) != child || status != 0) {
        std::fprintf(stderr, "%s: FAILED (wait status %d): %s\n", target.name.data(), status,
                     file.c_str());
        return false;
    }
    return true;
}

}  // namespace

int main(int argc, char** argv) {
    const Target* const target = argc > 2 ? findTarget(argv[1]) : nullptr;
    if (target == nullptr) {
        std::fputs("usage: fuzzreplay TARGET PATH...\n", stderr);
        return 2;
    }
    moveBelowOwnRoot(argv);
    int inputs = 0;
    int failures = 0;
    for (int i = 2; i < argc; ++i) {
        for (const std::string& file : filesOf(argv[i])) {
            ++inputs;
            failures += passes(*target, file) ? 0 : 1;
        }
    }
    std::printf("%s: %d inputs, %d failed\n", argv[1], inputs, failures);
    return inputs > 0 && failures == 0 ? 0 : 1;
}
