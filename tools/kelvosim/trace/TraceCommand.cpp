#include "TraceCommand.h"

#include <algorithm>
#include <iostream>
#include <sstream>

#include "CommandLine.h"
#include "OutputFile.h"
#include "sim/scenario/StartTime.h"
#include "trace/LabCourse.h"
#include "trace/TraceJoin.h"

using command_line::Failure;
using command_line::WrongUsage;

namespace {

constexpr double kLeastCorrelation = 0.8;  // below it the courses have little to do with each other
constexpr double kMostDoubt = 60;          // s; a shift that is known no better is none
constexpr size_t kMostZones = 4;
constexpr char kStandard[] = "-";

struct TraceOptions {
    std::string trace, lab, joined;
    LabLayout layout;
    std::vector<std::string> alignTo;
    std::optional<double> shift;
    std::string start;
};

std::string decimals(double value, int digits) {
    char text[48];
    snprintf(text, sizeof(text), "%.*f", digits, value);
    return text;
}

/** The readings of the first thermocouple. */
Course firstCourse(const LabRecord& record) {
    return LabCourse(record, record.columns.front(), 0).course();
}

/** Finds the shift and says how well it is known; throws when it is not. */
double alignedShift(const TraceOptions& options, const RecordedTrace& trace,
                    const LabRecord& record, std::ostream& says) {
    const std::string name = "lab-" + record.columns.front().model;
    const std::string zones = CLI::detail::join(options.alignTo, " and ");
    std::vector<Course> courses;
    for (const std::string& zone : options.alignTo) {
        courses.push_back(courseOf(trace, options.trace, zone));
    }
    const auto shift = findTimeShift(courses, firstCourse(record));
    if (!shift || shift->correlation < kLeastCorrelation) {
        throw Failure(name + " does not follow " + zones + " (" +
                              (shift ? "correlation " + decimals(shift->correlation, 2)
                                     : "one of them stands still or is too short") +
                              "): give --shift",
                      options.lab);
    }
    const double begin = record.times.front();
    const std::string range = decimals(shift->from + begin, 0) + " to " +
                              decimals(shift->to + begin, 0) + " s fit nearly as well";
    if (shift->to - shift->from > kMostDoubt) {
        throw Failure(
                zones + " does not tell when " + name + " began (" + range + "): give --shift",
                options.lab);
    }
    says << "the first reading of " << name << " is at " << decimals(shift->seconds + begin, 1)
         << " s: correlation " << decimals(shift->correlation, 4) << " with " << zones << "; "
         << range << '\n';
    return shift->seconds;
}

/** Seconds to add to the record's times so that they are the trace's. */
double shiftOf(const TraceOptions& options, const RecordedTrace& trace, const LabRecord& record,
               std::ostream& says) {
    if (options.shift) {
        return *options.shift - record.times.front();
    }
    if (options.start.empty()) {
        return alignedShift(options, trace, record, says);
    }
    const auto start = sim::parseStartTime(options.start);
    if (!start) {
        throw WrongUsage(
                "--start: \"" + options.start + "\" is no time such as 2026-03-01T08:00:00Z",
                "command line");
    }
    if (record.kind != TimeKind::EPOCH) {
        throw Failure("its times are no dates, so --start does not say where they belong",
                      options.lab);
    }
    return -static_cast<double>(*start) / 1e9;
}

void refuseTwice(const RecordedTrace& trace, const LabRecord& record, const std::string& file) {
    for (const LabColumn& column : record.columns) {
        if (std::ranges::count(trace.columns, "lab-" + column.model) > 0) {
            throw Failure("there is a column \"lab-" + column.model + "\" already", file);
        }
    }
}

/** Throws when nothing was measured at the time of any row. */
void refuseEmpty(const std::vector<JoinedColumn>& columns, const std::string& file) {
    for (const JoinedColumn& column : columns) {
        if (column.values == 0) {
            throw Failure(column.name +
                                  " would be empty: no row of the trace is at a time at which "
                                  "something was measured",
                          file);
        }
    }
}

/** Says what each column holds. */
void report(const TraceOptions& options, const std::vector<JoinedColumn>& columns, size_t rows,
            std::ostream& says) {
    for (const JoinedColumn& column : columns) {
        says << column.name << ": " << column.values << " of " << rows << " rows, "
             << decimals(column.least, 1) << " to " << decimals(column.most, 1) << " \u00b0C\n";
    }
    for (const std::string& doubt : doubtsAbout(columns, rows)) {
        command_line::complain("kelvosim", "warning: " + doubt + ": " + options.lab);
    }
}

void joinTrace(const TraceOptions& options) {
    if (options.alignTo.empty() && !options.shift && options.start.empty()) {
        throw WrongUsage("one of --align, --shift and --start is needed", "command line");
    }
    if (options.alignTo.size() > kMostZones) {
        throw WrongUsage("--align takes four zones at most", "command line");
    }
    std::ostream& says = options.joined == kStandard ? std::cerr : std::cout;
    const RecordedTrace trace = readRecordedTrace(options.trace);
    const LabRecord record = readLabRecord(options.lab, options.layout);
    refuseTwice(trace, record, options.trace);
    const double shift = shiftOf(options, trace, record, says);
    std::ostringstream text;
    const auto columns = writeJoined(text, trace, record, shift);
    refuseEmpty(columns, options.lab);
    OutputFile output(options.joined);
    output.stream() << text.view();
    output.noteLoss();
    output.finish();
    report(options, columns, trace.rows.size(), says);
}

/** The three ways to say when the record begins; at most one of them. */
void addShift(CLI::App& command, TraceOptions& options) {
    CLI::Option* const align = command.add_option("--align", options.alignTo,
                                                  "Zones that the first thermocouple follows, up "
                                                  "to four: the shift is taken with which a "
                                                  "sum of them fits it best");
    align->type_name("ZONES")->delimiter(',')->allow_extra_args(false);
    CLI::Option* const shift = command.add_option(
            "--shift", options.shift,
            "Seconds of the trace at which LAB begins, negative when it began before");
    shift->type_name("SECONDS")->excludes(align);
    command.add_option("--start", options.start,
                       "Wall clock at the trace's t = 0, such as 2026-03-01T08:00:00Z, for a LAB "
                       "with dates")
            ->type_name("TIME")
            ->excludes(align)
            ->excludes(shift);
}

}  // namespace

void addTrace(CLI::App& app) {
    static TraceOptions options;
    CLI::App* const command = app.add_subcommand(
            "trace",
            "Put what thermocouples measured beside a recorded trace, as columns lab-MODEL.\n"
            "One of --align, --shift and --start says when they measured");
    command->add_option("TRACE", options.trace, "Recorded trace, CSV: t and a column a zone")
            ->type_name("FILE")
            ->required();
    command->add_option(
                   "LAB", options.lab,
                   "The thermocouples' file: CSV with ; , or tabs, °C with . or decimal comma, "
                   "times in seconds, since 1970, of day, or dates (UTC unless they say)")
            ->type_name("FILE")
            ->required();
    command->add_option("JOINED", options.joined, "Where the result goes; - is standard output")
            ->type_name("FILE")
            ->required();
    command->add_option(
                   "--model", options.layout.models,
                   "Models of the temperature columns, in their order, or MODEL=COLUMN by name "
                   "or number; else the names in the header")
            ->type_name("MODELS")
            ->delimiter(',')
            ->allow_extra_args(false);
    command->add_option("--time", options.layout.time,
                        "Column of the times, by name or number, else the first")
            ->type_name("COLUMN");
    addShift(*command, options);
    command_line::setExamples(
            *command, {"kelvosim trace examples/tuning/zones.csv examples/tuning/thermocouple.csv "
                       "joined.csv --model front,back --align board-therm,battery"});
    command->callback([] { joinTrace(options); });
}
