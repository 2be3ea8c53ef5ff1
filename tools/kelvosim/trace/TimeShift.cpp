#include "TimeShift.h"

#include <Eigen/Dense>
#include <algorithm>
#include <cmath>
#include <map>

namespace {

using Eigen::Index;
using Eigen::MatrixXd;
using Eigen::VectorXd;

constexpr double kFineStep = 1;       // s, between the points that are compared
constexpr double kMostPoints = 2000;  // of a course; a longer one is looked at coarsely first
constexpr double kFiner = 4;          // each look is so much finer than the one before
// Shifts that leave at most so many times of what the best leaves unexplained fit nearly as well.
constexpr double kNearlyAsWell = 1.5;
constexpr double kNoise = 1e-6;  // of the variance: less tells nothing

struct Span {
    double begin = 0;  // s
    double end = 0;
    double length() const { return end - begin; }
};

/** The time in which all of the courses have values. */
Span commonSpan(const std::vector<Course>& courses) {
    Span span{courses.front().times.front(), courses.front().times.back()};
    for (const Course& course : courses) {
        span.begin = std::max(span.begin, course.times.front());
        span.end = std::min(span.end, course.times.back());
    }
    return span;
}

/** A course at equal distances. */
VectorXd sampled(const Course& course, const Span& span, double step) {
    VectorXd points(static_cast<Index>(span.length() / step) + 1);
    size_t next = 1;
    for (Index i = 0; i < points.size(); ++i) {
        const double time = span.begin + static_cast<double>(i) * step;
        while (next + 1 < course.times.size() && course.times[next] < time) {
            ++next;
        }
        const double distance = course.times[next] - course.times[next - 1];
        const double part = distance > 0 ? (time - course.times[next - 1]) / distance : 1;
        points[i] = std::lerp(course.values[next - 1], course.values[next], std::min(part, 1.0));
    }
    return points;
}

/** How much of a variance the columns of a mask explain, of their products with each other and with
 * it; none when a weight would not be positive. */
std::optional<double> explainedBy(unsigned mask, const MatrixXd& products, const VectorXd& with) {
    std::vector<Index> columns;
    for (Index i = 0; i < with.size(); ++i) {
        if ((mask >> i & 1u) != 0) {
            columns.push_back(i);
        }
    }
    const VectorXd part = with(columns);
    const VectorXd weights = MatrixXd(products(columns, columns)).ldlt().solve(part);
    return (weights.array() > 0).all() ? std::optional(weights.dot(part)) : std::nullopt;
}

/** The best correlation of a positive sum of the columns with the values, row by row. */
std::optional<double> correlation(const MatrixXd& columns, const VectorXd& values) {
    const MatrixXd centred = columns.rowwise() - columns.colwise().mean();
    const VectorXd around = values.array() - values.mean();
    const MatrixXd products = centred.transpose() * centred;
    const VectorXd with = centred.transpose() * around;
    const double variance = around.squaredNorm();
    std::optional<double> best;
    for (unsigned mask = 1; variance > 0 && mask < 1u << columns.cols(); ++mask) {
        const auto explained = explainedBy(mask, products, with);
        if (explained && std::isfinite(*explained)) {
            best = std::max(best.value_or(0), std::min(*explained / variance, 1.0));
        }
    }
    return best ? std::optional(std::sqrt(*best)) : std::nullopt;
}

/** Shifts of a course's begin against the others', in seconds, and how well each fits. */
class Search {
  public:
    Search(const std::vector<Course>& others, const Course& course)
          : mOthers(others),
            mCourse(course),
            mSpan(commonSpan(others)),
            mOwnSpan(commonSpan({course})) {}

    double length() const { return mSpan.length(); }
    double ownLength() const { return mOwnSpan.length(); }
    double begins() const { return mSpan.begin - mOwnSpan.begin; }
    bool isEmpty() const { return mFits.empty(); }

    void look(double from, double to, double step) {
        const VectorXd own = sampled(mCourse, mOwnSpan, step);
        MatrixXd columns(static_cast<Index>(length() / step) + 1, std::ssize(mOthers));
        for (size_t i = 0; i < mOthers.size(); ++i) {
            columns.col(static_cast<Index>(i)) = sampled(mOthers[i], mSpan, step);
        }
        const auto last = static_cast<Index>(std::ceil(to / step));
        for (auto lag = static_cast<Index>(std::floor(from / step)); lag <= last; ++lag) {
            const Index begin = std::max<Index>(lag, 0);
            const Index skipped = std::max<Index>(-lag, 0);
            const Index count = std::min(columns.rows() - begin, own.size() - skipped);
            if (count < 3 || count * 2 < std::min(columns.rows(), own.size())) {
                continue;
            }
            if (const auto fit = correlation(columns.middleRows(begin, count),
                                             own.segment(skipped, count))) {
                mFits[static_cast<double>(lag) * step] = *fit;
            }
        }
    }

    std::map<double, double>::const_iterator best() const {
        return std::ranges::max_element(mFits, {}, [](const auto& fit) { return fit.second; });
    }

    TimeShift result() const {
        const double unexplained = std::max(1 - best()->second, kNoise);
        TimeShift shift{vertex(), best()->second, best()->first, best()->first};
        for (const auto& [seconds, fit] : mFits) {
            if (1 - fit <= unexplained * kNearlyAsWell) {
                shift.from = std::min(shift.from, seconds);
                shift.to = std::max(shift.to, seconds);
            }
        }
        return shift;
    }

  private:
    /** Of the parabola through the best and its neighbours, the same distance away. */
    double vertex() const {
        const auto top = best();
        const auto before = mFits.find(top->first - kFineStep);
        const auto after = mFits.find(top->first + kFineStep);
        if (before == mFits.end() || after == mFits.end()) {
            return top->first;
        }
        const double bend = before->second - 2 * top->second + after->second;
        return bend < 0 ? top->first + (before->second - after->second) / bend / 2 * kFineStep
                        : top->first;
    }

    const std::vector<Course>& mOthers;
    const Course& mCourse;
    const Span mSpan;     // of the others
    const Span mOwnSpan;  // of the course
    std::map<double, double> mFits;
};

}  // namespace

std::optional<TimeShift> findTimeShift(const std::vector<Course>& others, const Course& course) {
    Search search(others, course);
    if (search.length() < kFineStep || search.ownLength() < kFineStep) {
        return std::nullopt;
    }
    const double longest = std::max(search.length(), search.ownLength());
    double step = std::max(std::ceil(longest / kMostPoints), 1.0) * kFineStep;
    search.look(-search.ownLength(), search.length(), step);
    while (step > kFineStep && !search.isEmpty()) {
        const double near = search.best()->first;
        const double finer = std::max(std::floor(step / kFiner), kFineStep);
        search.look(near - 2 * step, near + 2 * step, finer);
        step = finer;
    }
    if (search.isEmpty()) {
        return std::nullopt;
    }
    TimeShift shift = search.result();
    shift.seconds += search.begins();
    shift.from += search.begins();
    shift.to += search.begins();
    return shift;
}
