#include <algorithm>
#include <limits>

#include "expectations/ConditionCourse.h"
#include "expectations/Judges.h"
#include "expectations/Reasons.h"

namespace {

using sim::Expectation;

/** All conditions of an expectation over the time that it is about. */
class StateJudge {
  public:
    StateJudge(const Expectation& expectation, const Recording& recording)
          : mExpectation(expectation), mRecording(recording) {
        mCourses.reserve(expectation.conditions.size());
        for (const sim::Condition& condition : expectation.conditions) {
            mCourses.emplace_back(condition, recording);
        }
        mTimes = changes(expectation.fromMs, expectation.toMs);
    }

    Verdict verdict() const {
        switch (mExpectation.when) {
            case Expectation::When::AT:
                return holds(mExpectation.fromMs) ? passed(mExpectation.fromMs)
                                                  : failed(mExpectation.fromMs, sinceText());
            case Expectation::When::BY:
                return reached();
            case Expectation::When::ALWAYS:
                return kept();
            case Expectation::When::NEVER:
                return avoided();
        }
        return {};
    }

  private:
    using Times = std::set<int64_t>;

    /** Every time at which anything may become true or false. */
    Times changes(int64_t fromMs, int64_t toMs) const {
        Times times{fromMs};
        for (const ConditionCourse& course : mCourses) {
            course.addChanges(fromMs, toMs, times);
        }
        return times;
    }

    bool holds(int64_t timeMs) const {
        return std::ranges::all_of(
                mCourses, [=](const ConditionCourse& course) { return course.holds(timeMs); });
    }
    /** A figure that is there and not as it should be. */
    bool isBroken(int64_t timeMs) const {
        return std::ranges::any_of(mCourses, [=](const ConditionCourse& course) {
            return course.isKnown(timeMs) && !course.holds(timeMs);
        });
    }
    /** The first figure that is never there in that time: nothing can be said about it. */
    const ConditionCourse* unknown() const {
        const auto found = std::ranges::find_if(mCourses, [&](const ConditionCourse& course) {
            return std::ranges::none_of(mTimes, [&](int64_t t) { return course.isKnown(t); });
        });
        return found != mCourses.end() ? &*found : nullptr;
    }

    std::string text(int64_t timeMs) const {
        std::string text;
        for (const ConditionCourse& course : mCourses) {
            text += (text.empty() ? "" : ", ") + course.text(timeMs);
        }
        return text;
    }
    std::string sinceText() const {
        return mCourses.size() == 1
                       ? ", since " + secondsText(mCourses.front().since(mExpectation.fromMs))
                       : "";
    }
    /** The least and the most that a single number was. */
    std::string extentText() const {
        int64_t least = std::numeric_limits<int64_t>::max();
        int64_t most = std::numeric_limits<int64_t>::min();
        const ConditionCourse& course = mCourses.front();
        for (const int64_t time : mTimes) {
            if (const auto value = course.number(time)) {
                least = std::min(least, *value);
                most = std::max(most, *value);
            }
        }
        if (mCourses.size() > 1 || least >= most) {
            return {};
        }
        return course.spanText(least, most);
    }

    Verdict passed(int64_t timeMs) const {
        Verdict verdict;
        verdict.passed = true;
        verdict.timeMs = timeMs;
        verdict.happened = "at " + secondsText(timeMs) + ": " + text(timeMs);
        return verdict;
    }
    Verdict failed(int64_t timeMs, const std::string& more) const {
        Verdict verdict;
        verdict.timeMs = timeMs;
        verdict.happened = "at " + secondsText(timeMs) + ": " + text(timeMs) + more;
        for (const ConditionCourse& course : mCourses) {
            const std::string reason = reasonOf(course.condition(), timeMs, mRecording);
            if (verdict.why.find(reason) == std::string::npos) {
                verdict.why += (verdict.why.empty() ? "" : "; ") + reason;
            }
        }
        return verdict;
    }
    Verdict withoutFigure(const ConditionCourse& course) const {
        Verdict verdict = failed(mExpectation.toMs, "");
        verdict.happened = "there was no " + course.name() + " in that time";
        return verdict;
    }

    Verdict reached() const {
        const auto first = std::ranges::find_if(mTimes, [&](int64_t t) { return holds(t); });
        if (first != mTimes.end()) {
            return passed(*first);
        }
        const int64_t endMs = mRecording.info.durationMs;
        const Times later = changes(mExpectation.toMs, endMs);
        const auto next = std::ranges::find_if(later, [&](int64_t t) { return holds(t); });
        const std::string extent = extentText();
        return failed(mExpectation.toMs,
                      (extent.empty() ? "" : "; until then " + extent) +
                              (next != later.end() ? "; as expected first at " + secondsText(*next)
                               : mExpectation.toMs < endMs ? "; not up to the end either"
                                                           : ""));
    }
    Verdict kept() const {
        if (const ConditionCourse* const course = unknown()) {
            return withoutFigure(*course);
        }
        const auto first = std::ranges::find_if(mTimes, [&](int64_t t) { return isBroken(t); });
        return first == mTimes.end() ? passedOver() : failed(*first, heldFor(false));
    }
    Verdict avoided() const {
        if (const ConditionCourse* const course = unknownNumber()) {
            return withoutFigure(*course);
        }
        const auto first = std::ranges::find_if(mTimes, [&](int64_t t) { return holds(t); });
        return first == mTimes.end() ? passedOver() : failed(*first, heldFor(true));
    }
    /** Nothing that heats is an answer, too; no temperature is none. */
    const ConditionCourse* unknownNumber() const {
        const ConditionCourse* const course = unknown();
        return course != nullptr && course->condition().figure != sim::Figure::HEAT_SOURCE
                       ? course
                       : nullptr;
    }
    Verdict passedOver() const {
        const auto first = std::ranges::find_if(mTimes, [&](int64_t t) {
            return std::ranges::all_of(mCourses, [=](const auto& one) { return one.isKnown(t); });
        });
        Verdict verdict = passed(first != mTimes.end() ? *first : mExpectation.fromMs);
        if (const std::string extent = extentText(); !extent.empty()) {
            verdict.happened = extent;
        }
        return verdict;
    }
    /** For how long what fails the expectation was so, and how far it went. */
    std::string heldFor(bool holding) const {
        int64_t length = 0;
        for (auto time = mTimes.begin(); time != mTimes.end(); ++time) {
            const auto next = std::next(time);
            if (holding ? holds(*time) : isBroken(*time)) {
                length += (next != mTimes.end() ? *next : mExpectation.toMs) - *time;
            }
        }
        const std::string extent = extentText();
        return ", for " + secondsText(length) + " in all" + (extent.empty() ? "" : "; " + extent);
    }

    const Expectation& mExpectation;
    const Recording& mRecording;
    std::vector<ConditionCourse> mCourses;
    Times mTimes;
};

}  // namespace

Verdict judgeState(const Expectation& expectation, const Recording& recording) {
    return StateJudge(expectation, recording).verdict();
}
