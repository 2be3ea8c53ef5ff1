#pragma once

#include <optional>
#include <vector>

/** A measured value over time; times do not go back. */
struct Course {
    std::vector<double> times;  // s
    std::vector<double> values;
};

/** How a course lies to others. */
struct TimeShift {
    double seconds = 0;      // to add to its times so that it fits the others
    double correlation = 0;  // then, 0 to 1
    double from = 0;         // from here to there all shifts fit nearly as well
    double to = 0;
};

/**
 * The shift with which a course follows the others best, by the correlation with a sum of them,
 * none with a negative weight, over the time in which all have values: at least half of the shorter
 * one. Several of them, some quicker and some slower than the course, find it where one would be
 * late. To about a tenth of a second. None when there is no such sum. Pure.
 */
std::optional<TimeShift> findTimeShift(const std::vector<Course>& others, const Course& course);
