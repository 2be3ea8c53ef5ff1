#pragma once

#include <fstream>
#include <optional>
#include <ostream>
#include <string>

#include "common/NewFile.h"

/**
 * A file that is replaced once it is finished, or standard output for "-". Opening and finishing it
 * throw when it cannot be written.
 */
class OutputFile {
  public:
    explicit OutputFile(const std::string& name);
    std::ostream& stream();
    /** After each writing: keeps why something was lost, for finish(). Does not throw. */
    void noteLoss();
    /** All of it is in its place then. */
    void finish();

  private:
    const std::string mName;
    std::optional<common::NewFile> mNew;  // none for what is written in place
    std::ofstream mFile;
    int mError = 0;  // errno of the first loss
};
