#include "links/PatientCaller.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <future>
#include <set>
#include <thread>

#include "support/Await.h"
#include "support/LogCapture.h"

using kelvo::PatientCaller;

namespace {

using Clock = std::chrono::steady_clock;

constexpr int kAbsent = -1;
constexpr std::chrono::milliseconds kPatience(1000);
const std::string kLate = "the service does not answer, it counts as absent until it does";
const std::string kBack = "the service is asked again, its call has returned";

/** A call that returns when it is let go. */
class HungCall {
  public:
    auto call(int answer) {
        return [this, answer, go = mGo.get_future().share()] {
            mBegun.set_value();
            go.wait();
            return answer;
        };
    }
    void awaitBegin() { mBegun.get_future().wait(); }
    void letGo() { mGo.set_value(); }

  private:
    std::promise<void> mBegun;
    std::promise<void> mGo;
};

struct PatientCallerTest : testing::Test {
    /** Asks until there is an answer, or the limit is over. */
    int askUntilBack(int answer) {
        int given = kAbsent;
        await([&] {
            given = mCaller->ask(kAbsent, [answer] { return answer; });
            return given != kAbsent;
        });
        return given;
    }

    LogCapture log;
    std::unique_ptr<PatientCaller> mCaller = std::make_unique<PatientCaller>("the service");
};

}  // namespace

TEST_F(PatientCallerTest, asksOnOneThreadForAllCallersInTurn) {
    constexpr int kCallers = 8;
    constexpr int kCalls = 200;
    std::set<std::thread::id> threads;  // guarded by the turns
    int sum = 0;
    const auto call = [&] {
        threads.insert(std::this_thread::get_id());
        return ++sum;
    };
    std::vector<std::thread> callers;
    for (int i = 0; i < kCallers; ++i) {
        callers.emplace_back([&] {
            int last = 0;
            for (int j = 0; j < kCalls; ++j) {
                const int answer = mCaller->ask(kAbsent, call);
                EXPECT_GT(answer, last);
                last = answer;
            }
        });
    }
    for (std::thread& caller : callers) {
        caller.join();
    }
    EXPECT_EQ(sum, kCallers * kCalls);
    EXPECT_EQ(threads.size(), 1u);
    EXPECT_EQ(threads.count(std::this_thread::get_id()), 0u);
    EXPECT_FALSE(log.has(kLate));
}

TEST_F(PatientCallerTest, takesWhatIsLateForAbsentUntilItReturns) {
    HungCall hung;
    std::thread inLine([&] {
        hung.awaitBegin();
        EXPECT_EQ(mCaller->ask(kAbsent, [] { return 1; }), kAbsent) << "with the one before";
    });
    const Clock::time_point start = Clock::now();
    EXPECT_EQ(mCaller->ask(kAbsent, hung.call(5)), kAbsent);
    EXPECT_GE(Clock::now() - start, kPatience);
    inLine.join();
    EXPECT_LT(Clock::now() - start, 5 * kPatience);
    EXPECT_EQ(log.errors(kLate), 1u);
    // Not asked again: many of these take no time.
    std::atomic<int> asked = 0;
    const Clock::time_point late = Clock::now();
    for (int i = 0; i < 100; ++i) {
        EXPECT_EQ(mCaller->ask(kAbsent, [&] { return ++asked; }), kAbsent);
    }
    EXPECT_LT(Clock::now() - late, 20 * kPatience);
    EXPECT_EQ(asked, 0);
    EXPECT_FALSE(log.has(kBack));

    hung.letGo();
    EXPECT_EQ(askUntilBack(7), 7) << "and not the late answer";
    EXPECT_EQ(log.count(ANDROID_LOG_INFO, kBack), 1u);
    EXPECT_EQ(log.count(kLate), 1u);
}

TEST_F(PatientCallerTest, mayEndWhileACallIsOut) {
    HungCall hung;
    const auto held = std::make_shared<int>(5);
    EXPECT_EQ(mCaller->ask(kAbsent,
                           [held, call = hung.call(5)] {
                               call();
                               return *held;
                           }),
              kAbsent);
    mCaller.reset();
    EXPECT_EQ(held.use_count(), 2) << "the call goes on, and holds what it uses";
    hung.letGo();
    EXPECT_TRUE(await([&] { return held.use_count() == 1; }));
}
