#include "heat/TaskStats.h"

#include <algorithm>

#include "base/Numeric.h"

namespace kelvo {

namespace {

constexpr size_t kMostCharacters = 4095;
constexpr std::string_view kBlanks = " \t\v\f\r";

/** Cuts fields off the front of a line as scanf does, so that any white space separates. */
class FieldReader {
  public:
    explicit FieldReader(std::string_view line) : mRest(line) {}

    bool readNumber(int32_t* out) {
        skipBlanks();
        const bool negative = !mRest.empty() && mRest.front() == '-';
        if (negative || (!mRest.empty() && mRest.front() == '+')) {
            mRest.remove_prefix(1);
        }
        size_t digits = 0;
        int64_t value = 0;
        for (; digits < mRest.size() && mRest[digits] >= '0' && mRest[digits] <= '9'; ++digits) {
            value = std::min(value * 10 + (mRest[digits] - '0'), kTooMuch);
        }
        mRest.remove_prefix(digits);
        *out = clampToInt32(negative ? -value : value);
        return digits > 0;
    }

    bool readName(char (&out)[kThreadNameSize]) {
        skipBlanks();
        const size_t length = std::min(mRest.find_first_of(kBlanks), mRest.size());
        std::copy_n(mRest.begin(), std::min(length, kThreadNameSize - 1), out);
        return length > 0;
    }

  private:
    static constexpr int64_t kTooMuch = int64_t{1} << 32;

    void skipBlanks() {
        mRest.remove_prefix(std::min(mRest.find_first_not_of(kBlanks), mRest.size()));
    }

    std::string_view mRest;
};

bool parseLine(std::string_view line, PidTidPower* thread) {
    FieldReader reader(line);
    return reader.readNumber(&thread->pid) && reader.readNumber(&thread->tid) &&
           reader.readNumber(&thread->power) && reader.readName(thread->name);
}

}  // namespace

std::vector<PidTidPower> parseTaskStats(std::string_view text, bool* complete) {
    text = text.substr(0, kMostCharacters);
    text = text.substr(0, text.find('\0'));
    std::vector<PidTidPower> threads;
    *complete = true;
    while (!text.empty()) {
        const std::string_view line = text.substr(0, text.find('\n'));
        PidTidPower thread;
        if (!parseLine(line, &thread)) {
            *complete = false;
            break;
        }
        threads.push_back(thread);
        text.remove_prefix(std::min(line.size() + 1, text.size()));
    }
    return threads;
}

}  // namespace kelvo
