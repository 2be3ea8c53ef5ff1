// The daemon while those around it hang: nobody outside silences it.

#include <binder/IServiceManager.h>
#include <fcntl.h>
#include <signal.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <chrono>

#include "Hal.h"
#include "KelvodTest.h"
#include "support/Json.h"

namespace {

using namespace kelvo;
using android::OK;
using android::Parcel;
using Clock = std::chrono::steady_clock;

constexpr std::chrono::seconds kSecond(1);

const std::string kHung = " does not answer, it counts as absent until it does";
const std::string kBack = " is asked again, its call has returned";

struct KelvodHangTest : KelvodTest {
    KelvodHangTest() { mTree.setProperty("persist.sys.shelltemp.interval", "1"); }

    /** With an ambient model each cycle asks charger and health. */
    void useAmbientModel() { setConfig(30, "," + ambientScene("skin")); }
    /** The longest that a question for the temperature took while `happening` is not over. */
    template <typename Happening>
    Clock::duration longestAnswer(Happening happening) const {
        Clock::duration longest{};
        const Clock::time_point limit =
                Clock::now() + std::chrono::milliseconds(kBinderWorldLimitMs);
        while (!happening() && Clock::now() < limit) {
            const Clock::time_point start = Clock::now();
            EXPECT_EQ(callKelvod(SHELL_TEMP_AND_TYPE), OK);
            EXPECT_EQ(callKelvod(GET_ALL_SHELL_TEMPS), OK);
            longest = std::max(longest, Clock::now() - start);
        }
        EXPECT_LT(Clock::now(), limit);
        return longest;
    }
    bool has(const std::string& text, size_t count = 1) const { return countInLog(text) >= count; }
    void tellAll(RoleProcess& listener, int32_t status) {
        EXPECT_EQ(callKelvod(NOTIFY_THERMAL_STATUS, {status}), OK);
        EXPECT_EQ(listener.ask("until status " + std::to_string(status)), "seen");
    }
};

/** A role: has the daemon dump into a pipe that nobody reads; its argument says who is gone. */
int dump(RoleLink& link) {
    int ends[2];
    if (pipe2(ends, O_CLOEXEC) != 0) {
        return 1;
    }
    if (link.argument() == "full") {
        fcntl(ends[1], F_SETFL, O_NONBLOCK);
        const std::string block(4096, 'x');
        while (write(ends[1], block.data(), block.size()) > 0) {
        }
        fcntl(ends[1], F_SETFL, 0);
    } else {
        close(ends[0]);
    }
    link.send("dumps");
    kelvodService()->dump(ends[1], {});
    link.send("dumped");
    link.receive();
    return 0;
}
const Role kDump("dump", dump);

}  // namespace

TEST_F(KelvodHangTest, answersAndTellsWhileTheChargerHangs) {
    useAmbientModel();
    Hal charger("charger", mTree.root());
    startKelvod();
    RoleProcess& listener = startListeners();
    charger.hang();
    const std::string hung = "the charger service" + kHung;
    EXPECT_LT(longestAnswer([&] { return has(hung); }), kSecond);
    // Cycles go on, and nobody waits for it any more.
    const Clock::time_point start = Clock::now();
    for (int32_t status = 1; status < 20; ++status) {
        EXPECT_EQ(callKelvod(SET_SCREEN_STATUS, {status}), OK);
        EXPECT_EQ(callKelvod(SET_CURRENT_PACKAGE, {std::to_string(status)}), OK);
        tellAll(listener, 100 + status);
    }
    EXPECT_LT(Clock::now() - start, 5 * kSecond);
    mTree.setZoneTemp(0, 41000);
    EXPECT_TRUE(logs("Shell temp 41000, board"));
    charger.goOn();
    EXPECT_TRUE(logs("the charger service" + kBack));
    EXPECT_EQ(countInLog(hung), 1u);
}

TEST_F(KelvodHangTest, startsAndAnswersWhileTheHealthServiceHangs) {
    useAmbientModel();
    for (const char* const kind : {"health", "health-hidl"}) {
        SCOPED_TRACE(kind);
        mTree.setNode("/vendor/etc/vintf/declared", sim::serviceKind(kind).declared);
        Hal health(kind, mTree.root());
        health.hang();
        startKelvod();
        EXPECT_TRUE(logs("the health service" + kHung));
        EXPECT_LT(longestAnswer([&] { return has("Shell temp 40000, board"); }), kSecond);
        health.goOn();
        EXPECT_TRUE(health.awaitClient()) << "what was late is done";
        EXPECT_TRUE(logs("the health service" + kBack));
        EXPECT_EQ(countInLog("the health service" + kHung), 1u);
    }
}

TEST_F(KelvodHangTest, switchesHeatMonitoringWhileItsServicesHang) {
    setConfig(30, kHeatSources);
    std::array<Hal, 3> hals{Hal{"quorix", mTree.root()}, Hal{"frames", mTree.root()},
                            Hal{"performance", mTree.root()}};
    startKelvod();
    RoleProcess& listener = startListeners();
    for (const Hal& hal : hals) {
        hal.hang();
    }
    const Clock::time_point start = Clock::now();
    EXPECT_EQ(callKelvod(COMPONENT_HEAT_TEST, {kStartHeat}), OK);
    EXPECT_LT(Clock::now() - start, 5 * kSecond);
    EXPECT_TRUE(logs("the usage-statistics engine" + kHung));
    EXPECT_LT(longestAnswer([&] { return has("the display compositor" + kHung); }), kSecond);
    EXPECT_TRUE(logs("the performance service" + kHung));
    EXPECT_EQ(callKelvod(COMPONENT_HEAT_TEST, {kStopHeat}), OK);
    tellAll(listener, 77);
    for (const Hal& hal : hals) {
        hal.goOn();
    }
    EXPECT_TRUE(logs("the usage-statistics engine" + kBack));
    EXPECT_TRUE(logs("the performance service" + kBack));
    EXPECT_TRUE(logs("the display compositor" + kBack));
}

TEST_F(KelvodHangTest, tellsAHungListenerTheLatestWhenItIsBack) {
    startKelvod();
    RoleProcess& hung = startListeners();
    RoleProcess& lives = startListeners(3);
    hung.signal(SIGSTOP);
    const Clock::time_point start = Clock::now();
    tellAll(lives, 101);
    EXPECT_LT(Clock::now() - start, 5 * kSecond);
    tellAll(lives, 102);
    tellAll(lives, 103);
    EXPECT_EQ(callKelvod(SET_LIGHT_LAMP_STATUS, {1}), OK);
    EXPECT_TRUE(logs("Reload shell fitting model config flashon")) << "the work thread is free";
    mTree.setZoneTemp(0, 40500);
    EXPECT_TRUE(logs("Shell temp 40500, board")) << "temperatures go on";
    hung.signal(SIGCONT);
    EXPECT_EQ(hung.ask("until status 101,status 103"), "seen") << hung.ask("heard");
    EXPECT_TRUE(logs("is passed over no more"));
    tellAll(lives, 104);
    EXPECT_EQ(hung.ask("until status 104"), "seen");
    EXPECT_EQ(countInLog("does not answer, it is passed over until it does"), 1u);
}

TEST_F(KelvodHangTest, refusesMessagesPastABoundAndTakesThemAgain) {
    startKelvod();
    std::vector<RoleProcess*> hung;
    for (int i = 0; i < 5; ++i) {
        hung.push_back(&startListeners());
        EXPECT_EQ(hung.back()->ask("stick"), "sticks");
    }
    EXPECT_EQ(callKelvod(NOTIFY_THERMAL_STATUS, {5}), OK);
    ASSERT_EQ(hung.front()->receive(), "stuck") << "for nearly two seconds the work thread waits";
    int taken = 0;
    KelvodRequest nobody;
    Parcel reply;
    while (kelvodService()->transact(UNREGISTER_CLIENT, nobody, &reply) == OK && taken < 5000) {
        ++taken;
    }
    EXPECT_GE(taken, 1024);
    EXPECT_LT(taken, 5000);
    EXPECT_TRUE(logs("1024 messages wait, calls that post one are refused"));
    EXPECT_LT(longestAnswer([] { return callKelvod(SET_LIGHT_LAMP_STATUS, {1}) == OK; }), kSecond);
    EXPECT_TRUE(logs("Reload shell fitting model config flashon"));
}

TEST_F(KelvodHangTest, outlivesReadersOfItsDump) {
    startKelvod();
    RoleProcess& gone = mWorld.start("dump", "gone");
    EXPECT_EQ(gone.receive(), "dumps");
    EXPECT_EQ(gone.receive(), "dumped");
    EXPECT_TRUE(logs("write kelvo config file filed.(Broken pipe)"));
    ASSERT_TRUE(isAlive());
    std::vector<RoleProcess*> neverRead;
    for (int i = 0; i < 10; ++i) {  // more than the daemon has binder threads
        neverRead.push_back(&mWorld.start("dump", "full"));
        EXPECT_EQ(neverRead.back()->receive(), "dumps");
    }
    const std::string givenUp = "write kelvo config file filed.(Connection timed out)";
    EXPECT_LT(longestAnswer([&] { return has(givenUp, neverRead.size()); }), kSecond);
    for (RoleProcess* const process : neverRead) {
        EXPECT_EQ(process->receive(), "dumped");
    }
}
