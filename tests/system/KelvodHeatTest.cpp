// The daemon's heat monitoring with real processes and threads.

#include <gmock/gmock.h>

#include <array>
#include <atomic>
#include <fstream>
#include <thread>

#include "Hal.h"
#include "KelvodTest.h"
#include "support/Json.h"

namespace {

namespace fs = std::filesystem;
using namespace kelvo;
using android::Parcel;

constexpr char kMade[] = "heatpc readSamples loop thread...";
constexpr char kSampled[] = "cpuComp processRawSample energy=";

/** Values of COMPONENT_HEAT_TEST. */
constexpr int32_t kStart = 1;
constexpr int32_t kStop = 2;

/** Empty when nothing is monitored. */
std::string heatReport() {
    Parcel reply;
    kelvodService()->transact(GET_COMPONENTS_HEAT_DETAIL, KelvodRequest(), &reply);
    reply.readExceptionCode();
    return android::String8(reply.readString16()).c_str();
}

class KelvodHeatTest : public KelvodTest {
  protected:
    void startKelvod() {
        setConfig(30,
                  ",'heatsource_detection':{'heatsource_model':{'device_name':['cpu','display'],"
                  "'coefficient':[1,1]}}");
        mTree.setProperty("persist.sys.shelltemp.interval", "1");
        mTree.setZoneTemp(0, 37900);
        KelvodTest::startKelvod();
        mListener = &startListeners();
    }
    /** Sets the shell (m°C), which moves some tenths of a degree a second, and waits for it. */
    void setShell(int32_t temp) {
        const std::string line = "Shell temp " + std::to_string(temp) + ", board";
        const size_t before = countInLog(line);
        mTree.setZoneTemp(0, temp);
        ASSERT_TRUE(logs(line, before + 1));
        handleMessages();
    }
    /** Waits until the daemon has handled what has been posted. */
    void handleMessages() {
        callKelvod(NOTIFY_THERMAL_STATUS, {++mNotified});
        mListener->send("until status " + std::to_string(mNotified));
        ASSERT_EQ(mListener->receive(), "seen");
    }
    /** The sampling threads of the daemon. */
    std::vector<std::string> samplers() const {
        std::vector<std::string> found;
        for (const auto& task :
             fs::directory_iterator("/proc/" + std::to_string(pid()) + "/task")) {
            std::string name;
            std::getline(std::ifstream(task.path() / "comm"), name);
            if (name == "comp-monitor") {
                found.push_back(task.path().filename());
            }
        }
        return found;
    }

  private:
    RoleProcess* mListener = nullptr;
    int32_t mNotified = 1000;  // no status of the configuration's
};

}  // namespace

TEST_F(KelvodHeatTest, isMonitoredFromAbove38DegreesTo36OnOneThread) {
    startKelvod();
    const Hal performance("performance", mTree.root());
    setShell(38000);
    EXPECT_EQ(heatReport(), "") << "38.000 is not above";
    EXPECT_THAT(samplers(), testing::IsEmpty());

    setShell(37900);
    setShell(38100);
    EXPECT_NE(heatReport(), "");
    ASSERT_TRUE(logs(kSampled));
    const std::vector<std::string> first = samplers();
    EXPECT_EQ(first.size(), 1u);

    setShell(36000);
    EXPECT_NE(heatReport(), "") << "36.000 goes on";
    setShell(35999);
    EXPECT_EQ(heatReport(), "");

    const size_t sampled = countInLog(kSampled);
    setShell(38100);
    EXPECT_NE(heatReport(), "");
    EXPECT_TRUE(logs(kSampled, sampled + 1)) << "the thread that waited goes on";
    EXPECT_EQ(samplers(), first);
    EXPECT_EQ(countInLog(kMade), 1u);
}

TEST_F(KelvodHeatTest, isAskedByEightSwitchedAndSampledWhileHalsAreKilled) {
    constexpr int kDeaths = 2;  // about 10 s each: the second pass samples the processor
    startKelvod();
    std::atomic<bool> stop = false;
    std::vector<std::thread> callers;
    const auto keepCalling = [&](std::vector<std::pair<uint32_t, client::Argument>> calls) {
        callers.emplace_back([&stop, calls] {
            while (!stop) {
                for (const auto& [code, argument] : calls) {
                    callKelvod(code, {argument});
                }
            }
        });
    };
    const std::string traffic = "transmit:1,receive:1,mobileTx:1,mobileRx:1";
    for (const int32_t query : {3, 3, 4, 4, 7, 7}) {
        keepCalling({{COMPONENT_HEAT_TEST, query}, {GET_COMPONENTS_HEAT_DETAIL, 0}});
    }
    keepCalling({{SET_NETWORK_SPEED_INFO, traffic}, {SET_NETWORK_INFO, traffic}});
    keepCalling({{SET_WIFI_INFO, traffic}, {GET_BIG_DATA, 0}});
    // Each stop wakes the sampling thread.
    const auto switchOften = [] {
        for (int i = 0; i < 50; ++i) {
            callKelvod(COMPONENT_HEAT_TEST, {kStop});
            callKelvod(COMPONENT_HEAT_TEST, {kStart});
        }
    };
    std::array<Hal, 3> hals{Hal{"performance", mTree.root()}, Hal{"panel", mTree.root()},
                            Hal{"frames", mTree.root()}};
    for (int death = 1; death <= kDeaths; ++death) {
        for (Hal& hal : hals) {
            hal.killAndStart();
        }
        std::thread other(switchOften);
        switchOften();
        other.join();
        hals[0].answer(sim::TaskStats{"1\t1\t" + std::to_string(5000 * death) + "\tx\n"});
        EXPECT_TRUE(logs(kSampled + std::to_string(death) + "\n")) << "of the new HAL";
        ASSERT_TRUE(isAlive()) << death;
    }
    stop = true;
    for (std::thread& caller : callers) {
        caller.join();
    }
    EXPECT_TRUE(isAlive());
    EXPECT_EQ(countInLog(kMade), 1u);
    EXPECT_EQ(samplers().size(), 1u);
}
