#include "heat/TopThreads.h"

#include <gtest/gtest.h>

#include <cstring>

#include "heat/TableInterpolation.h"

using kelvo::parseTaskStats;
using kelvo::PidTidPower;
using kelvo::TopThreads;

namespace {

PidTidPower thread(int pid, int tid, int power, const char* name = "t") {
    PidTidPower result;
    result.pid = pid;
    result.tid = tid;
    result.power = power;
    std::strncpy(result.name, name, sizeof(result.name) - 1);
    return result;
}

/** "tid:power", by share, of a text's threads or of a ranking. */
std::string list(const std::vector<PidTidPower>& threads) {
    std::string text;
    for (const PidTidPower& t : threads) {
        text += (text.empty() ? "" : " ") + std::to_string(t.tid) + ":" + std::to_string(t.power);
    }
    return text;
}

}  // namespace

TEST(TaskStatsTest, readsLinesUpToTheFirstThatLacksAField) {
    const std::string filler(4090, 'n');
    // text, threads, whether it is complete, why
    const std::tuple<std::string, std::string, bool, const char*> rows[] = {
            {"1\t2\t300\tmain\n1\t3\t-5\tRender Thread\n", "2:300 3:-5", true, ""},
            {"1\t2\t300\tmain", "2:300", true, "no line end"},
            {"  1 2\t\t300 main\r\n", "2:300", true, "any white space"},
            {"1\t2\t300\tmain\n\n1\t3\t5\tx\n", "2:300", false, "an empty line ends it"},
            {"1\t2\t300\tmain\n1\t3\t5\t\n1\t4\t5\tx", "2:300", false, "no name"},
            {"1\t2\tpower\tmain\n", "", false, "no number"},
            {"1\t2\t-\tmain\n", "", false, "a sign alone"},
            {"1\t2\t99999999999999999999\tx\n1\t3\t-99999999999\ty\n", "2:2147483647 3:-2147483648",
             true, "held at the ends"},
            {"1\t2\t7\t" + filler + "\n1\t3\t8\tx\n", "2:7", true, "only 4095 characters"},
            {"1\t2\t7\t" + filler.substr(8) + "\n1\t3\t8\tx", "2:7", false, "the name cut off"},
            {"1\t2\t7\t" + filler.substr(9) + "\n1\t3\t8\tx", "2:7 3:8", true, "just read"},
            {std::string("1\t2\t7\tx\n\0 1\t3\t8\ty\n", 19), "2:7", true, "a zero ends the text"},
            {"", "", true, ""},
    };
    for (const auto& [text, threads, isComplete, why] : rows) {
        bool complete = !isComplete;
        EXPECT_EQ(list(parseTaskStats(text, &complete)), threads) << why << text;
        EXPECT_EQ(complete, isComplete) << why << text;
    }
    bool complete = false;
    EXPECT_STREQ(parseTaskStats("1 2 3 0123456789abcdefgh", &complete)[0].name, "0123456789abcde");
}

TEST(TopThreadsTest, keepsEightAndTheNinthDisplacesTheWeakest) {
    // powers (of threads 1, 2, …), top, why
    const std::tuple<std::vector<int>, std::string, const char*> rows[] = {
            {{8, 7, 6, 5, 4, 3, 2, 1}, "1:8 2:7 3:6 4:5 5:4 6:3 7:2 8:1", "all"},
            {{8, 7, 6, 5, 4, 3, 2, 1, 9}, "1:8 2:7 3:6 4:5 5:4 6:3 7:2 9:9", "a ninth, stronger"},
            {{8, 7, 6, 5, 4, 3, 2, 1, 1}, "1:8 2:7 3:6 4:5 5:4 6:3 7:2 8:1", "a ninth, equal"},
            {{5, 5, 5, 5, 5, 5, 5, 5, 6, 7},
             "2:5 3:5 4:5 5:5 6:5 7:5 8:5 10:7",
             "equal powers share one element: 7 displaces 6"},
    };
    for (const auto& [powers, top, why] : rows) {
        TopThreads threads;
        threads.startPeriod(0);
        std::vector<PidTidPower> reading;
        for (size_t i = 0; i < powers.size(); ++i) {
            reading.push_back(thread(1, static_cast<int>(i) + 1, powers[i]));
        }
        threads.add(reading);
        EXPECT_EQ(threads.getTopKeepPowerTid(5, 1.0F), 0);
        EXPECT_EQ(list(threads.byShare()), top) << why;
    }
}

TEST(TopThreadsTest, sharesAreThoseOfTheProcess) {
    TopThreads threads;
    threads.startPeriod(0);
    // Process 7: 30000 and 50000 in two readings, 40000 on average.
    threads.add({thread(7, 70, 10000), thread(7, 71, 20000), thread(8, 80, 500000)});
    threads.add({thread(7, 70, 50000)});
    ASSERT_EQ(threads.getTopKeepPowerTid(10, 0.5F), 0);
    const auto ranked = threads.byShare();
    EXPECT_EQ(list(ranked), "80:500000 70:50000 71:20000") << "the latest reading of each";
    EXPECT_FLOAT_EQ(ranked[0].powerToThermal, 250000 / 5000.0F / 0.5F / 2);
    EXPECT_FLOAT_EQ(ranked[1].powerToThermal, 40000 / 5000.0F / 0.5F / 2);
    EXPECT_EQ(threads.getTopKeepPowerTid(20, 0.5F), -1) << "nothing of the period before is left";
}

TEST(TopThreadsTest, findsThreadsThatStayTooLong) {
    TopThreads threads;
    threads.startPeriod(0);
    const auto rank = [&](int now, std::vector<PidTidPower> reading) {
        threads.add(reading);
        threads.getTopKeepPowerTid(now, 1.0F);
    };
    rank(900, {thread(1234, 5678, 10, "spinner"), thread(1, 1, 10)});
    rank(1000, {thread(1234, 5678, 10, "spinner")});  // thread 1 leaves and loses its time
    rank(1800, {thread(1234, 5678, 10, "spinner"), thread(1, 1, 10)});
    EXPECT_TRUE(threads.exceptThreads().empty()) << "1800 s exactly";
    rank(1801, {thread(1234, 5678, 10, "spinner"), thread(1, 1, 10)});
    ASSERT_EQ(threads.exceptThreads().size(), 1U);
    const auto& [key, found] = *threads.exceptThreads().begin();
    EXPECT_EQ(key, "1234_5678");
    EXPECT_EQ(found.keepTime, 1801);
    EXPECT_EQ(found.power, 40) << "of all periods";
    EXPECT_STREQ(found.name, "spinner");
    rank(1900, {thread(1234, 5678, 10, "spinner")});
    EXPECT_EQ(threads.exceptThreads().at("1234_5678").keepTime, 1900) << "replaced";
}

TEST(TopThreadsTest, letsTheWeakestGiveWayWhenItIsFull) {
    TopThreads threads;
    threads.startPeriod(0);
    threads.add({thread(-1, -1, 2000000000, "early"), thread(-3, -3, 50000, "calmer")});
    for (int i = 0; i < 100000; ++i) {
        threads.add({thread(i, i, i == 99999 ? 1000000 : 1), thread(i, i + 100000, 5)});
    }
    threads.add({thread(-2, -2, 20000, "late"), thread(7, 300000, 4, "weak"),
                 thread(-3, -3, 0, "calmer")});
    ASSERT_EQ(threads.getTopKeepPowerTid(5, 1.0F), 0);
    const auto top = threads.byShare();
    ASSERT_EQ(top.size(), 8U);
    EXPECT_TRUE(list(top).starts_with("-1:2000000000 99999:1000000 -2:20000 ")) << list(top);
    EXPECT_FLOAT_EQ(top[0].powerToThermal, 2000000000 / 100002 / 5000.0F / 100002);
    EXPECT_FLOAT_EQ(top[1].powerToThermal, 1000005 / 100002 / 5000.0F / 100002);
    EXPECT_EQ(list(top).find("300000:"), std::string::npos);
    EXPECT_EQ(list(top).find("-3:"), std::string::npos) << "the latest reading counts";
}

TEST(PowerTableTest, givesThePlaceOfTheWeakest) {
    kelvo::PowerTable<int64_t> table;
    const auto add = [&table](int32_t id, int64_t power) {
        table.update(id, [power](int64_t& value) { value += power; });
    };
    for (int32_t id = 1; id < 4096; ++id) {
        add(id, id < 4 ? 10 : 100);
    }
    EXPECT_FALSE(table.wouldBeWeakest(0)) << "there is room";
    add(4096, 100);
    EXPECT_TRUE(table.wouldBeWeakest(10)) << "no stronger than any";
    EXPECT_FALSE(table.wouldBeWeakest(11));
    add(1, 5);  // no longer the weakest
    add(5000, 1);
    EXPECT_EQ(table.find(2), nullptr) << "of equally weak ones the lowest id";
    add(5001, 1);
    add(5002, 1);
    EXPECT_EQ(table.find(5001), nullptr);
    EXPECT_EQ(*table.find(1), 15);
    EXPECT_EQ(table.entries().size(), 4096U);
}

TEST(TableInterpolationTest, goesOnAboveTheTableAndIsZeroBelow) {
    struct Row {
        float x, y;
    };
    const std::vector<Row> two = {{300, 100}, {600, 250}};
    // table, at, result, why
    const std::tuple<std::vector<Row>, float, float, const char*> rows[] = {
            {two, 450, 175, ""},
            {two, 700, 300, "above"},
            {two, 600, 250, "at the last row"},
            {two, 300, 0, "at the lowest row: none is below"},
            {two, 100, 0, ""},
            {{{300, 100}}, 301, 100, "one row"},
            {{{300, 100}}, 300, 0, ""},
            {{}, 300, 0, "no row"},
            {{{1, 10}, {2, 30}, {4, 40}}, 3, 35, "the middle"},
            {{{1, 10}, {2, 30}, {4, 40}}, 6, 50, ""},
            {{{1, 10}, {2, 30}, {2, 50}}, 6, 50, "a step at the end holds"},
            {{{1, 10}, {2, 30}, {2, 50}, {3, 60}}, 2.5, 55, "the highest row below"},
    };
    for (const auto& [table, at, result, why] : rows) {
        EXPECT_EQ(interpolateTable(table, &Row::x, &Row::y, at), result) << why << " at " << at;
    }
}
