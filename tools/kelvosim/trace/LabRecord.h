#pragma once

#include <optional>
#include <string>
#include <vector>

#include "trace/LabTime.h"

/** What thermocouples measured at the place of one model. */
struct LabColumn {
    std::string model;                         // "front"
    std::vector<std::optional<double>> temps;  // °C, one for each time; none: no reading
};

/** What a thermocouple's file holds. Times do not go back. */
struct LabRecord {
    TimeKind kind = TimeKind::ELAPSED;
    std::vector<double> times;  // s
    std::vector<LabColumn> columns;
};

/** Which columns of the file are what. A column goes by its name in the header or its number. */
struct LabLayout {
    std::string time = "1";
    /** "front", which takes the next column, or "front=T2", "front=3"; none: the header's names. */
    std::vector<std::string> models;
};

/** Reads a whole file; a command_line::Failure names what is wrong, file, line and column. */
LabRecord readLabRecord(const std::string& file, const LabLayout& layout);
