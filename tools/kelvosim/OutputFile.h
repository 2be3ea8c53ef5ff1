#pragma once

#include <fstream>
#include <ostream>
#include <string>

/** A file that is written anew, or standard output for "-". Throws when it cannot be written. */
class OutputFile {
  public:
    explicit OutputFile(const std::string& name);
    std::ostream& stream();
    /** Throws when something of it was lost. */
    void finish();

  private:
    void check();

    const std::string mName;
    std::ofstream mFile;
};
