#pragma once

#include <sys/types.h>

#include <optional>
#include <string>
#include <vector>

/** A program of this build as a process, with its output in a pipe. Ended with the object. */
class Program {
  public:
    struct Result {
        int status = -1;  // exit status, or 128 + signal
        std::string out;
        std::string err;
    };

    /** Starts `name` of the build's programs; the temporary folder it uses can be set. */
    Program(const std::string& name, const std::vector<std::string>& arguments,
            const std::string& temporaryFolder = "");
    ~Program();
    Program(const Program&) = delete;
    Program& operator=(const Program&) = delete;

    /** The next line of standard output; none at its end, or when none comes within the limit. */
    std::optional<std::string> readLine();
    /** Waits for the end, reading both outputs. */
    Result wait();
    void signal(int number) const;
    pid_t pid() const { return mPid; }
    /** Its present child processes. */
    std::vector<pid_t> children() const { return childrenOf(mPid); }
    static std::vector<pid_t> childrenOf(pid_t parent);

    static Result run(const std::string& name, const std::vector<std::string>& arguments);

  private:
    bool fill(int timeoutMs);

    pid_t mPid = -1;
    int mOut = -1;
    int mErr = -1;
    std::string mOutText;
    std::string mErrText;
    size_t mLineStart = 0;
};
