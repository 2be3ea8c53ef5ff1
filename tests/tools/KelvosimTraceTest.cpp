// Thermocouples' files beside recorded traces.

#include <gmock/gmock.h>

#include <cmath>
#include <tuple>

#include "sim/tree/TemporaryFolder.h"
#include "support/Files.h"
#include "support/Program.h"
#include "trace/LabTime.h"
#include "trace/TimeShift.h"

namespace {

using testing::HasSubstr;

constexpr char kTrace[] = "t,skin,/proc/x\n0,30000,\"a,b\"\n5,31000,\n10.5,null,c\n";

class KelvosimTraceTest : public testing::Test {
  protected:
    /** Joins kTrace with a thermocouple's file onto standard output. */
    Program::Result join(const std::string& lab, std::vector<std::string> options,
                         const std::string& trace = kTrace) {
        std::ofstream(path("trace.csv")) << trace;
        std::ofstream(path("lab.csv")) << lab;
        options.insert(options.begin(), {"trace", path("trace.csv"), path("lab.csv"), "-"});
        return Program::run("kelvosim", options);
    }
    std::string path(const std::string& name) const { return mFolder.path() + "/" + name; }

  private:
    sim::TemporaryFolder mFolder{"kelvo-test-"};
};

/** A shell that warms, cools and warms again, `late` seconds after it should, one value a step. */
Course course(double seconds, double step, double late) {
    Course result;
    for (double t = 0; t <= seconds; t += step) {
        result.times.push_back(t);
        result.values.push_back(std::sin((t - late) / 97) + std::sin((t - late) / 41));
    }
    return result;
}

}  // namespace

TEST_F(KelvosimTraceTest, takesWhatLoggersWrite) {
    const std::string joined =
            "t,skin,/proc/x,lab-front\n0,30000,\"a,b\",null\n5,31000,,33450\n10.5,null,c,34000\n";
    // file, options
    const std::pair<std::string, std::vector<std::string>> rows[] = {
            {"\xef\xbb\xbfZeit;T 1\r\n\r\n0;33,0\r\n8;33,8 °C\r\n10;34\r\n",
             {"--model", "front", "--shift", "0.5"}},
            {"# logger\n09:59:58\t33\n10:00:08\tOL\n10:00:08\t34\n",
             {"--model", "front=2", "--shift=0.5"}},
            {"T1,when\n+33.0,1772352000.5\n34,1772352010.5\n",
             {"--start", "2026-03-01T08:00:00Z", "--time", "when", "--model", "front"}},
            {"1772352000500,33\n1772352010500,34\n",
             {"--model=front", "--start=2026-03-01T08:00:00Z"}},
            {"time,lab-front\n2026-03-01T10:00:00.5+02:00,33\n01.03.2026 08:00:10.5,34\n",
             {"--start=2026-03-01T08:00:00Z"}},
            {"23:59:55,33\n00:00:05,34\n", {"--model=front", "--shift=0.5"}},
    };
    for (const auto& [lab, options] : rows) {
        const Program::Result result = join(lab, options);
        EXPECT_THAT(result, ended(0, HasSubstr("lab-front: 2 of 3 rows, 33."))) << lab;
        EXPECT_EQ(result.out, joined) << lab;
    }
}

TEST_F(KelvosimTraceTest, saysWhereAFileIsWrong) {
    // file, further option, error
    const std::tuple<std::string, std::string, std::string> rows[] = {
            {"t;front\n0;33\n5;x3,1\n", "--time=1",
             "\"x3,1\" is no temperature in column 2: " + path("lab.csv") + ": line 3"},
            {"t,front\n0,33000\n", "--time=1", "\"33000\" is no temperature in °C, -60 to 200, in"},
            {"t,front\n0,33\n1,5,33\n", "--time=1", "expected 2 cells, found 3: "},
            {"t,front\n7,33\n6,33\n", "--time=1", "the time goes back: \"6\" in column 1: "},
            {"t,front\n7,33\n10:00:00,33\n", "--time=1", "is another kind of time than those"},
            {"t,front\n03/01/26,33\n", "--time=1", "\"03/01/26\" is no time in column 1: "},
            {"t,T 1\n0,33\n", "--time=1", "\"T 1\" is no name of a model: name it with --model"},
            {"0,33\n1,33\n", "--time=1", "there is no header: name the models"},
            {"t,front\n0,33\n", "--model=back=frnt", "no column \"frnt\", did you mean \"front\"?"},
            {"t,front\n0,33\n", "--model=a,b", "no column is left for the model \"b\""},
            {"t,front\n0,33\n", "--model=a=3", "there is no column 3 among 2"},
            {"t,front\n0,33\n", "--model=t=1", "the model \"t\" would have the times"},
            {"t,front,front\n0,33,33\n", "--time=1", "the model \"front\" stands twice"},
            {"t,front\n0,\"33\n", "--time=1", "a quoted cell has no end"},
            {"t,front\n0,33\n", "--time=1", "there are fewer than two readings"},
            {"", "--time=1", "there is nothing in it"},
            {"t,front\n20,33\n30,33\n", "--time=1", "lab-front would be empty"},
    };
    for (const auto& [lab, option, error] : rows) {
        const Program::Result result = join(lab, {option, "--shift=100"});
        EXPECT_THAT(result, ended(1, HasSubstr(error))) << lab;
        EXPECT_EQ(result.out, "") << lab;
    }
    const std::string lab = "t,front\n0,33\n9,33\n";
    EXPECT_THAT(join(lab, {"--shift=0"}, "t,lab-front\n0,1\n"), ended(1, HasSubstr("already")));
    EXPECT_THAT(join(lab, {"--shift=0"}, "t,a\n0,1\n0,x\n"), ended(1, HasSubstr("line 3")));
    EXPECT_THAT(join(lab, {"--start=2026-03-01T08:00:00Z"}), ended(1, HasSubstr("no dates")));
    EXPECT_THAT(join(lab, {"--align=sin"}), ended(1, HasSubstr("did you mean \"skin\"?")));
    EXPECT_THAT(join(lab, {"--align=skin"}), ended(1, HasSubstr("does not follow skin (one of")));
    EXPECT_THAT(join(lab, {}), ended(2, HasSubstr("--align, --shift and --start")));
}

TEST_F(KelvosimTraceTest, doubtsWhatNoShellDoes) {
    EXPECT_THAT(join("t,front\n0,33\n4,98.6\n", {"--shift=1"}),
                ended(0, testing::AllOf(HasSubstr("lab-front has a value in 1 of 3 rows only"),
                                        HasSubstr("lab-front has 98.6 °C, which no shell has"))));
}

TEST_F(KelvosimTraceTest, keepsTheOldFileWhenItFails) {
    std::ofstream(path("joined.csv")) << "old";
    std::ofstream(path("trace.csv")) << kTrace;
    std::ofstream(path("lab.csv")) << "t,front\n0,33\n60,33\n";
    const auto into = [&](const std::string& file, const std::string& shift) {
        return Program::run("kelvosim",
                            {"trace", path("trace.csv"), path("lab.csv"), file, "--shift", shift});
    };
    EXPECT_EQ(into(path("joined.csv"), "50").status, 1);
    EXPECT_EQ(readFile(path("joined.csv")), "old");
    EXPECT_EQ(into(path("joined.csv"), "-1").status, 0);
    EXPECT_THAT(into("/dev/full", "0"), ended(1, HasSubstr("cannot be written (No space left")));
}

TEST(TimeShiftTest, findsWhereCoursesBelongTogether) {
    // first course, second, what is found, how near
    const std::tuple<Course, Course, double, double> rows[] = {
            {course(900, 5, 0), course(600, 2, 40), -40, 0.2},
            {course(900, 5, 0), course(900, 1, -33.4), 33.4, 0.2},
            {course(40000, 5, 0), course(30000, 5, 700), -700, 0.5},
    };
    for (const auto& [first, second, shift, near] : rows) {
        const auto found = findTimeShift({first}, second);
        ASSERT_TRUE(found);
        EXPECT_NEAR(found->seconds, shift, near);
        EXPECT_GT(found->correlation, 0.999);
        EXPECT_LT(found->to - found->from, 5);
    }
    const std::vector<Course> zones = {course(900, 5, 0), course(900, 5, 40)};
    Course between = zones[0];
    for (size_t i = 0; i < between.values.size(); ++i) {
        between.values[i] += 2 * zones[1].values[i];
    }
    EXPECT_NEAR(findTimeShift(zones, between)->seconds, 0, 0.5) << "quicker and slower ones";
    EXPECT_GT(std::abs(findTimeShift({zones[0]}, between)->seconds), 20);
    const Course ramp{{0, 900}, {30, 40}};
    EXPECT_GT(findTimeShift({ramp}, ramp)->to, 400) << "a straight line tells no time";
    EXPECT_FALSE(findTimeShift({ramp}, Course{{0, 900}, {40, 30}})) << "the other way";
    EXPECT_FALSE(findTimeShift({ramp}, Course{{0, 900}, {30, 30}})) << "stands still";
}
