#include "config/JsonNesting.h"

#include <algorithm>
#include <string>

namespace kelvo {

namespace {

constexpr std::string_view kByteOrderMark = "\xef\xbb\xbf";
constexpr std::string_view kBlanks = " \t\r\n";
constexpr std::string_view kSeparators = " \t\r\n[]{},:\"/";
constexpr size_t kNone = std::string_view::npos;

size_t lineCommentEnd(std::string_view text, size_t start) {
    const size_t end = text.find_first_of("\r\n", start);
    if (end == kNone) {
        return text.size();
    }
    return text.substr(end, 2) == "\r\n" ? end + 2 : end + 1;
}

/**
 * Reads a text as the library does, values aside: what follows its first mistake never nests
 * deeper. A text is taken for correct in some places where the library sees a mistake, never the
 * other way round.
 */
class NestingReader {
  public:
    explicit NestingReader(std::string_view text) : mText(text) {
        // One of the library's readers drops it, for the other one it is a mistake.
        mNext = text.substr(0, kByteOrderMark.size()) == kByteOrderMark ? kByteOrderMark.size() : 0;
    }

    size_t findTooDeep() {
        while (mStep != Step::END) {
            skipBlanks();
            if (mStep == Step::VALUE && mOpen.size() >= kMaxJsonDepth) {
                return mNext;
            }
            takeStep();
        }
        return kNone;
    }

  private:
    enum class Step { VALUE, ELEMENT, NAME, COLON, AFTER_ELEMENT, AFTER_MEMBER, END };

    char next() const { return mNext < mText.size() ? mText[mNext] : '\0'; }

    void skipBlanks() { mNext = std::min(mText.find_first_not_of(kBlanks, mNext), mText.size()); }

    /** Whether there was one. */
    bool skipComments() {
        bool found = false;
        for (size_t end = 0; (end = jsonCommentEnd(mText, mNext)) != kNone; skipBlanks()) {
            mNext = end;
            found = true;
        }
        return found;
    }

    void skipString() {
        for (++mNext; mNext < mText.size() && mText[mNext] != '"'; ++mNext) {
            mNext += mText[mNext] == '\\' ? 1U : 0U;
        }
        mNext = std::min(mNext + 1, mText.size());
    }

    /** A number, a word, or what is neither. */
    void skipWord() { mNext = std::min(mText.find_first_of(kSeparators, mNext), mText.size()); }

    /** Takes this byte for granted: without it the rest does not matter. */
    void takeOr(char expected, Step step) {
        mStep = next() == expected && mNext < mText.size() ? step : Step::END;
        ++mNext;
    }

    void open(Step step) {
        mOpen += next();
        ++mNext;
        mStep = step;
    }

    void close() {
        mOpen.pop_back();
        ++mNext;
        finishValue();
    }

    void finishValue() {
        mStep = mOpen.empty()         ? Step::END
                : mOpen.back() == '[' ? Step::AFTER_ELEMENT
                                      : Step::AFTER_MEMBER;
    }

    void takeStep() {
        switch (mStep) {
            case Step::VALUE:
                return takeValue();
            case Step::ELEMENT:
                // The library looks for the end before it looks for comments.
                return next() == ']' ? close() : void(mStep = Step::VALUE);
            case Step::NAME:
                return takeName();
            case Step::COLON:
                return takeOr(':', Step::VALUE);
            case Step::AFTER_ELEMENT:
                skipComments();
                return next() == ']' ? close() : takeOr(',', Step::ELEMENT);
            case Step::AFTER_MEMBER:
                return takeAfterMember();
            case Step::END:
                return;
        }
    }

    void takeValue() {
        skipComments();
        const char c = next();
        if (c == '[') {
            open(Step::ELEMENT);
        } else if (c == '{') {
            open(Step::NAME);
        } else if (c == '"') {
            skipString();
            finishValue();
        } else if (mNext == mText.size() || kSeparators.find(c) != kNone) {
            mStep = Step::END;
        } else {
            skipWord();
            finishValue();
        }
    }

    void takeName() {
        skipComments();
        if (next() == '}') {
            close();
        } else if (next() == '"') {
            skipString();
            mStep = Step::COLON;
        } else {
            mStep = Step::END;
        }
    }

    // Behind a comment the library takes whatever stands there for the comma.
    void takeAfterMember() {
        const bool hadComment = skipComments();
        if (next() == '}') {
            close();
        } else if (hadComment && mNext < mText.size()) {
            skipToken();
            mStep = Step::NAME;
        } else {
            takeOr(',', Step::NAME);
        }
    }

    void skipToken() {
        if (next() == '"') {
            skipString();
        } else if (next() == '/') {
            mNext = std::min(mNext + 2, mText.size());  // no comment: the library tried its mark
        } else if (kSeparators.find(next()) != kNone) {
            ++mNext;
        } else {
            skipWord();
        }
    }

    const std::string_view mText;
    size_t mNext = 0;
    Step mStep = Step::VALUE;
    std::string mOpen;  // the brackets around what comes next
};

}  // namespace

size_t jsonCommentEnd(std::string_view text, size_t start) {
    const std::string_view mark = text.substr(std::min(start, text.size()), 2);
    if (mark == "//") {
        return lineCommentEnd(text, start);
    }
    if (mark != "/*") {
        return kNone;
    }
    const size_t end = text.find("*/", start + 2);
    return end == kNone ? text.size() : end + 2;
}

size_t findTooDeepJson(std::string_view text) {
    return NestingReader(text).findTooDeep();
}

}  // namespace kelvo
