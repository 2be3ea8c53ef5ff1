#pragma once

#include <stdlib.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

/** All of a file; empty when it cannot be read. */
inline std::string readFile(const std::string& path) {
    std::ifstream stream(path);
    return {std::istreambuf_iterator<char>(stream), {}};
}

/** A variable of the environment; empty when it is not set. */
inline std::string environment(const char* name) {
    const char* const value = getenv(name);
    return value == nullptr ? "" : value;
}

/** The path of a program of this build. */
inline std::string programPath(const std::string& name) {
    return std::filesystem::read_symlink("/proc/self/exe").parent_path() / name;
}

/** How many entries a folder has. */
inline int64_t countEntries(const std::string& folder) {
    return std::distance(std::filesystem::directory_iterator(folder), {});
}

/** The names of a process's threads. */
inline std::vector<std::string> threadNames(pid_t pid) {
    std::vector<std::string> names;
    for (const auto& task :
         std::filesystem::directory_iterator("/proc/" + std::to_string(pid) + "/task")) {
        std::getline(std::ifstream(task.path() / "comm"), names.emplace_back());
    }
    return names;
}
