#pragma once

#include <cstdint>
#include <optional>

#include "trace/LabRecord.h"
#include "trace/TimeShift.h"

/** What one thermocouple measured, at any time. */
class LabCourse {
  public:
    /** The readings of a column, moved by `shift` seconds. */
    LabCourse(const LabRecord& record, const LabColumn& column, double shift);

    /** Between two readings what lies between them; none outside and in gaps. m°C. */
    std::optional<int32_t> at(double seconds) const;
    const Course& course() const { return mCourse; }

  private:
    Course mCourse;       // °C, of the present readings
    double mMostGap = 0;  // s
};
