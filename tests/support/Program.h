#pragma once

#include <gmock/gmock.h>
#include <sys/types.h>

#include <optional>
#include <string>
#include <vector>

/** A program of this build as a process, with its output in a pipe. Ended with the object. */
class Program {
  public:
    struct Result {
        int status = -1;  // exit status, or 128 + signal
        std::string out, err;
    };

    /** Starts `name` of the build's programs; the temporary folder it uses can be set. */
    Program(const std::string& name, const std::vector<std::string>& arguments,
            const std::string& temporaryFolder = "");
    ~Program();
    Program(const Program&) = delete;
    Program& operator=(const Program&) = delete;

    /** The next line of standard output; none at its end, or when none comes within the limit. */
    std::optional<std::string> readLine();
    /** The next one that holds the text; "" when none comes. */
    std::string lineWith(const std::string& text);
    /** Waits for the end, reading both outputs. */
    Result wait();
    void signal(int number) const;
    pid_t pid() const { return mPid; }
    /** Its present child processes. */
    std::vector<pid_t> children() const { return childrenOf(mPid); }
    static std::vector<pid_t> childrenOf(pid_t parent);

    static Result run(const std::string& name, const std::vector<std::string>& arguments);
    /** The same on the phone below `root`; `before` are more settings, or a command to run it by.
     */
    static Result runRooted(const std::string& root, const std::string& name,
                            const std::vector<std::string>& arguments,
                            const std::vector<std::string>& before = {});
    /** What bash offers for the last of these words of a command, with a blank between. */
    static std::string completed(const std::string& script, const std::string& words);

  private:
    bool fill(int timeoutMs);

    pid_t mPid = -1;
    int mOut = -1;
    int mErr = -1;
    std::string mOutText;
    std::string mErrText;
    size_t mLineStart = 0;
};

/** Matches what a program gave that ended with this status and wrote this on standard error. */
inline testing::Matcher<const Program::Result&> ended(
        int status, const testing::Matcher<const std::string&>& err) {
    return testing::AllOf(testing::Field("status", &Program::Result::status, status),
                          testing::Field("err", &Program::Result::err, err));
}

inline void PrintTo(const Program::Result& result, std::ostream* stream) {
    *stream << "status " << result.status << ", out: " << result.out << ", err: " << result.err;
}
